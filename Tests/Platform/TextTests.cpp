#include "Platform/Text.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

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

std::string ToNarrow(std::u16string_view text) {
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(needed), '#');
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), needed, nullptr, nullptr), needed);
    return result;
}

TEST(TextConversion, CarriesEveryCodePointBothWays) {
    for (char32_t c = 0; c <= 0x10FFFF; c = c == 0xD7FF ? 0xE000 : c + 1) {
        WideString wide;
        if (c >= 0x10000) wide.push_back(static_cast<char16_t>(0xD7C0 + (c >> 10)));
        wide.push_back(static_cast<char16_t>(c < 0x10000 ? c : 0xDC00 + (c & 0x3FF)));
        const std::string narrow = ToNarrow(wide);
        ASSERT_EQ(narrow.size(), c < 0x80 ? 1u : c < 0x800 ? 2u : c < 0x10000 ? 3u : 4u);
        ASSERT_EQ(ToWide(narrow, MB_ERR_INVALID_CHARS), wide) << static_cast<unsigned>(c);
    }
}

TEST(TextConversion, ReplacesMalformedBytesAndRefusesThemWhenToldTo) {
    const struct {
        std::string_view bytes;
        WideString text;
    } cases[] = {
        {"a\x80z", u"a\uFFFDz"},                            // a follower alone
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong "/"
        {"\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD"},            // overlong in three bytes
        {"\xF0\x8F\xBF\xBF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // overlong in four bytes
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
        {"\xF5\xFF", u"\uFFFD\uFFFD"},                      // bytes that never occur
        {"\xE2\x82", u"\uFFFD"},                            // cut short at the end
        {"\xE2\x82z", u"\uFFFDz"},                          // cut short by the next character
        {"\xF0\x9F\x98\xE2\x82\xAC", u"\uFFFD\u20AC"},      // cut short by a good one
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(ToWide(bytes), text);
        EXPECT_EQ(ToWide(bytes, MB_ERR_INVALID_CHARS), std::nullopt);
        EXPECT_EQ(GetLastError(), ERROR_NO_UNICODE_TRANSLATION);
    }
}

TEST(NumberFormat, GroupsRoundsAndSignsAsTheFormatSays) {
    const NUMBERFMTW grouped{0, 0, 3, u".", u",", 1}, twoDigits{2, 1, 3, u",", u".", 1};
    const std::tuple<const WideChar*, NUMBERFMTW, WideString> rows[] = {
        {u"999", grouped, u"999"},
        {u"18446744073709551615", grouped, u"18,446,744,073,709,551,615"},
        {u"0001234", grouped, u"1,234"},
        {u"999.5", grouped, u"1,000"},
        {u"-0.4", grouped, u"0"},
        {u"-1234567.895", twoDigits, u"-1.234.567,90"},
        {u".5", twoDigits, u"0,50"},
        {u".5", {2, 0, 3, u".", u",", 1}, u".50"},
        {u"1234567", {0, 0, 0, u".", u",", 1}, u"1234567"}};
    for (const auto& [number, format, text] : rows) {
        WideChar buffer[64];
        EXPECT_EQ(GetNumberFormatW(LOCALE_INVARIANT, 0, number, &format, buffer, 64), text.size() + 1);
        EXPECT_EQ(buffer, text);
    }
}

}  // namespace
