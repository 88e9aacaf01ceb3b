#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>

#include "ErrnoFailure.h"
#include "Platform/Errors.h"
#include "Platform/Text.h"

namespace Platform {

namespace {

struct Decimal {
    bool isNegative;
    WideString integer;  // without leading zeros; empty for 0
    WideString fraction;
};

bool AreDigits(std::u16string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; });
}

std::optional<Decimal> ParseDecimal(std::u16string_view text) {
    const bool isNegative = text.starts_with(u'-');
    if (isNegative) text.remove_prefix(1);
    const std::size_t point = text.find(u'.');
    std::u16string_view integer = text.substr(0, point);
    const std::u16string_view fraction =
        point == std::u16string_view::npos ? std::u16string_view() : text.substr(point + 1);
    if ((integer.empty() && fraction.empty()) || !AreDigits(integer) || !AreDigits(fraction)) return std::nullopt;
    integer.remove_prefix(std::min(integer.find_first_not_of(u'0'), integer.size()));
    return Decimal{isNegative, WideString(integer), WideString(fraction)};
}

// Adds 1 to a number of digits; true if it overflowed to zeros.
bool Increment(WideString& digits) noexcept {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit != u'9') {
            ++*digit;
            return false;
        }
        *digit = u'0';
    }
    return true;
}

// Half rounds away from zero. What rounds to zero loses its sign.
void Round(Decimal& number, std::size_t digits) {
    const bool roundsUp = number.fraction.size() > digits && number.fraction[digits] >= u'5';
    number.fraction.resize(digits, u'0');
    if (roundsUp && Increment(number.fraction) && Increment(number.integer)) number.integer.insert(0, 1, u'1');
    if (number.integer.empty() && number.fraction.find_first_not_of(u'0') == WideString::npos)
        number.isNegative = false;
}

WideString Group(std::u16string_view digits, std::size_t groupSize, std::u16string_view separator) {
    if (groupSize == 0) return WideString(digits);
    const std::size_t firstGroup = digits.size() % groupSize;
    WideString result(digits.substr(0, firstGroup));
    for (std::size_t i = firstGroup; i < digits.size(); i += groupSize) {
        if (i != 0) result += separator;
        result += digits.substr(i, groupSize);
    }
    return result;
}

WideString Format(Decimal number, const NUMBERFMTW& format) {
    Round(number, format.NumDigits);
    if (number.integer.empty() && (format.LeadingZero != 0 || format.NumDigits == 0)) number.integer.push_back(u'0');
    WideString result(number.isNegative ? 1 : 0, u'-');
    result += Group(number.integer, format.Grouping, format.lpThousandSep);
    if (format.NumDigits != 0) result.append(format.lpDecimalSep).append(number.fraction);
    return result;
}

bool IsSound(const NUMBERFMTW& format) noexcept {
    constexpr std::uint32_t mostDigits = 9, mostGrouped = 9, minusInFront = 1;
    return format.NumDigits <= mostDigits && format.LeadingZero <= 1 && format.Grouping <= mostGrouped &&
           format.lpDecimalSep != nullptr && format.lpThousandSep != nullptr && format.NegativeOrder == minusInFront;
}

}  // namespace

int GetNumberFormatW(DWORD /*locale*/, DWORD flags, const WideChar* number, const NUMBERFMTW* format, WideChar* buffer,
                     int size) noexcept {
    if (number == nullptr || format == nullptr || !IsSound(*format) || size < 0 || (size > 0 && buffer == nullptr))
        return Posix::Fail(ERROR_INVALID_PARAMETER, 0);
    if (flags != 0) return Posix::Fail(ERROR_INVALID_FLAGS, 0);
    return Posix::OrOutOfMemory(0, [&]() -> int {
        std::optional<Decimal> parsed = ParseDecimal(number);
        if (!parsed) return Posix::Fail(ERROR_INVALID_PARAMETER, 0);
        const WideString text = Format(*std::move(parsed), *format);
        const std::size_t needed = text.size() + 1;
        const std::size_t room = static_cast<std::size_t>(size != 0 ? size : std::numeric_limits<int>::max());
        if (needed > room) return Posix::Fail(ERROR_INSUFFICIENT_BUFFER, 0);
        if (size != 0) std::copy_n(text.c_str(), needed, buffer);
        return static_cast<int>(needed);
    });
}

}  // namespace Platform
