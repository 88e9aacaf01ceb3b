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

TEST(EnvironmentVariables, AreReadAsUtf8) {
    const ScopedVariable variable("PLATFORM_TEST_\xC3\xA9", "\xE2\x82\xAC 5");
    WideChar buffer[4] = {u'#'};
    EXPECT_EQ(GetEnvironmentVariableW(u"PLATFORM_TEST_\u00E9", buffer, 3), 4u);
    EXPECT_EQ(buffer[0], u'#');
    EXPECT_EQ(GetEnvironmentVariableW(u"PLATFORM_TEST_\u00E9", buffer, 4), 3u);
    EXPECT_EQ(WideString(buffer), u"\u20AC 5");
}

TEST(EnvironmentVariables, KeepAnEmptyOneApartFromAMissingOne) {
    const ScopedVariable empty("PLATFORM_TEST", ""), missing("PLATFORM_TEST_MISSING", std::nullopt);
    WideChar buffer[2] = {u'#', u'#'};
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(GetEnvironmentVariableW(u"PLATFORM_TEST", nullptr, 0), 1u);
    EXPECT_EQ(GetEnvironmentVariableW(u"PLATFORM_TEST", buffer, 2), 0u);
    EXPECT_EQ(buffer[0], u'\0');
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    EXPECT_EQ(GetEnvironmentVariableW(u"PLATFORM_TEST_MISSING", buffer, 2), 0u);
    EXPECT_EQ(GetLastError(), ERROR_ENVVAR_NOT_FOUND);
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
