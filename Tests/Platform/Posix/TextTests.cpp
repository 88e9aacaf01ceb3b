#include "Platform/Text.h"

#include <gtest/gtest.h>

#include <optional>

#include "Platform/Errors.h"

namespace {

using namespace Platform;

std::optional<WideString> ToWide(std::string_view text, DWORD flags = 0) {
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(CP_UTF8, flags, text.data(), length, nullptr, 0);
    if (needed == 0) return std::nullopt;
    WideString result(static_cast<std::size_t>(needed), u'#');
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, flags, text.data(), length, result.data(), needed), needed);
    return result;
}

TEST(TextConversion, ReplacesMalformedBytesOrRejectsThemOnRequest) {
    const struct {
        std::string_view bytes;
        WideString text;
    } cases[] = {
        {"a\x80z", u"a\uFFFDz"},                            // a continuation byte without a start
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong "/"
        {"\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD"},            // overlong in three bytes
        {"\xF0\x8F\xBF\xBF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // overlong in four bytes
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
        {"\xF5\xFF", u"\uFFFD\uFFFD"},                      // bytes that never occur
        {"\xE2\x82", u"\uFFFD"},                            // cut short at the end
        {"\xE2\x82z", u"\uFFFDz"},                          // cut short by the next character
        {"\xF0\x9F\x98\xE2\x82\xAC", u"\uFFFD\u20AC"},      // cut short by a valid character
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(ToWide(bytes), text);
        EXPECT_EQ(ToWide(bytes, MB_ERR_INVALID_CHARS), std::nullopt);
        EXPECT_EQ(GetLastError(), ERROR_NO_UNICODE_TRANSLATION);
    }
}

}  // namespace
