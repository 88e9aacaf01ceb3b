#include "Common/Base/Text.h"

#include <algorithm>
#include <limits>

#include "Platform/Text.h"

namespace Harbor {
namespace {

constexpr WideChar ToLower(WideChar c) noexcept {
    return c >= u'A' && c <= u'Z' ? static_cast<WideChar>(c + (u'a' - u'A')) : c;
}

constexpr std::uint32_t NoDigit = 36;

constexpr std::uint32_t DigitValue(WideChar c) noexcept {
    if (c >= u'0' && c <= u'9') return static_cast<std::uint32_t>(c - u'0');
    const WideChar lower = ToLower(c);
    return lower >= u'a' && lower <= u'f' ? static_cast<std::uint32_t>(lower - u'a' + 10) : NoDigit;
}

}  // namespace

std::u16string_view TrimEnd(std::u16string_view text, std::u16string_view set) noexcept {
    return text.substr(0, text.find_last_not_of(set) + 1);
}

std::u16string_view Trim(std::u16string_view text, std::u16string_view set) noexcept {
    text = TrimEnd(text, set);
    return text.substr(std::min(text.find_first_not_of(set), text.size()));
}

std::vector<std::u16string_view> Split(std::u16string_view text, std::u16string_view separators) {
    std::vector<std::u16string_view> pieces;
    for (std::size_t start = text.find_first_not_of(separators); start != text.npos;) {
        const std::size_t end = std::min(text.find_first_of(separators, start), text.size());
        pieces.push_back(text.substr(start, end - start));
        start = text.find_first_not_of(separators, end);
    }
    return pieces;
}

int CompareIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
                                          [](WideChar x, WideChar y) { return ToLower(x) == ToLower(y); });
    if (inA != a.end() && inB != b.end()) return ToLower(*inA) < ToLower(*inB) ? -1 : 1;
    return static_cast<int>(inA != a.end()) - static_cast<int>(inB != b.end());
}

bool EqualsIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept {
    return a.size() == b.size() && CompareIgnoreCase(a, b) == 0;
}

ParsedNumber ParseNumber(std::u16string_view text) noexcept {
    std::size_t at = std::min(text.find_first_not_of(WhiteSpace), text.size());
    const bool negative = at < text.size() && text[at] == u'-';
    if (at < text.size() && (text[at] == u'-' || text[at] == u'+')) ++at;

    std::uint32_t base = 10;
    if (at < text.size() && text[at] == u'0') {
        const bool hexadecimal = at + 2 < text.size() && ToLower(text[at + 1]) == u'x' && DigitValue(text[at + 2]) < 16;
        base = hexadecimal ? 16 : 8;
        if (hexadecimal) at += 2;
    }

    constexpr std::uint64_t limit = std::numeric_limits<std::uint32_t>::max();
    std::uint64_t value = 0;
    const std::size_t firstDigit = at;
    for (; at < text.size() && DigitValue(text[at]) < base; ++at) {
        value = std::min(value * base + DigitValue(text[at]), limit + 1);
    }
    if (at == firstDigit) return {};
    if (value > limit) return {static_cast<std::uint32_t>(limit), at};
    const auto magnitude = static_cast<std::uint32_t>(value);
    return {negative ? 0u - magnitude : magnitude, at};
}

}  // namespace Harbor
