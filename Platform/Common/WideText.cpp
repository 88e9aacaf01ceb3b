#include "WideText.h"

#include <algorithm>
#include <limits>

namespace Platform::Common {

namespace {

char16_t LowerAscii(char16_t c) noexcept {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
}

unsigned DigitValue(char16_t c) noexcept {
    const char16_t lower = LowerAscii(c);
    if (lower >= u'0' && lower <= u'9') return static_cast<unsigned>(lower - u'0');
    if (lower >= u'a' && lower <= u'f') return static_cast<unsigned>(lower - u'a' + 10);
    return std::numeric_limits<unsigned>::max();
}

}  // namespace

bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char16_t x, char16_t y) { return LowerAscii(x) == LowerAscii(y); });
}

std::u16string_view TrimBlanks(std::u16string_view text) noexcept {
    constexpr std::u16string_view blanks = u" \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::u16string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

std::optional<std::u16string_view> TakeLine(std::u16string_view& text) noexcept {
    if (text.empty()) return std::nullopt;
    const std::u16string_view line = text.substr(0, text.find_first_of(u"\r\n"));
    text.remove_prefix(line.size());
    if (text.starts_with(u"\r\n")) {
        text.remove_prefix(2);
    } else if (!text.empty()) {
        text.remove_prefix(1);
    }
    return line;
}

std::optional<std::uint32_t> ParseDigits(std::u16string_view digits, unsigned base) noexcept {
    if (digits.empty()) return std::nullopt;
    std::uint64_t number = 0;
    for (const char16_t c : digits) {
        const unsigned value = DigitValue(c);
        if (value >= base) return std::nullopt;
        number = number * base + value;
        if (number > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    }
    return static_cast<std::uint32_t>(number);
}

}  // namespace Platform::Common
