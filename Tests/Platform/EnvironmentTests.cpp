#include "Platform/Environment.h"

#include <gtest/gtest.h>

#include "Platform/Errors.h"
#include "ScopedVariable.h"

namespace {

using namespace Platform;

WideString Expand(const WideString& source) {
    WideString buffer(ExpandEnvironmentStringsW(source.c_str(), nullptr, 0), u'#');
    EXPECT_EQ(ExpandEnvironmentStringsW(source.c_str(), buffer.data(), static_cast<DWORD>(buffer.size())),
              buffer.size());
    EXPECT_EQ(buffer.back(), u'\0');
    buffer.pop_back();
    return buffer;
}

TEST(EnvironmentExpansion, ReplacesKnownNamesAndLeavesTheRestAsItStands) {
    const ScopedVariable known("PLATFORM_TEST", "v%X%"), missing("PLATFORM_TEST_MISSING", std::nullopt);
    const std::pair<WideString, WideString> cases[] = {
        {u"", u""},
        {u"plain", u"plain"},
        {u"%PLATFORM_TEST%", u"v%X%"},
        {u"a%PLATFORM_TEST%%PLATFORM_TEST%b", u"av%X%v%X%b"},
        {u"%PLATFORM_TEST_MISSING%", u"%PLATFORM_TEST_MISSING%"},
        {u"50% of %PLATFORM_TEST%", u"50% of v%X%"},
        {u"100%", u"100%"},
        {u"%%", u"%%"},
        {u"%PLATFORM_TEST", u"%PLATFORM_TEST"},
    };
    for (const auto& [source, expected] : cases) EXPECT_EQ(Expand(source), expected);
}

}  // namespace
