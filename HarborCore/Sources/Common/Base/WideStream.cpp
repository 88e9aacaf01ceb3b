#include "Common/Base/WideStream.h"

#include <charconv>
#include <iterator>

#include "Common/Base/Text.h"

namespace Harbor {

WideStream& WideStream::operator<<(const char* text) {
    return text == nullptr ? *this << u"(null)" : *this << FromUtf8(text);
}

WideStream& WideStream::operator<<(double value) {
    // As printf's "%g", but independent of the locale of the process.
    constexpr int precision = 6;
    char digits[32];
    *std::to_chars(digits, std::end(digits) - 1, value, std::chars_format::general, precision).ptr = '\0';
    return *this << digits;
}

WideStream& WideStream::operator<<(const void* pointer) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    const auto value = reinterpret_cast<std::uintptr_t>(pointer);
    WideChar* at = text_.Extend(16);
    for (int shift = 60; shift >= 0; shift -= 4) *at++ = digits[value >> shift & 0xF];
    return *this;
}

WideStream& WideStream::operator<<(std::ios_base& (*manipulator)(std::ios_base&)) noexcept {
    base_ = manipulator == static_cast<std::ios_base& (*)(std::ios_base&)>(std::hex)   ? 16
            : manipulator == static_cast<std::ios_base& (*)(std::ios_base&)>(std::oct) ? 8
                                                                                       : 10;
    return *this;
}

WideStream& WideStream::AppendDecimal(std::int64_t value) {
    const auto magnitude = static_cast<std::uint64_t>(value);
    if (value < 0) text_.Append(u'-');
    return AppendNumber(value < 0 ? 0 - magnitude : magnitude);
}

WideStream& WideStream::AppendNumber(std::uint64_t value) {
    WideChar digits[24];
    WideChar* at = std::end(digits);
    do {
        const auto digit = static_cast<unsigned>(value % base_);
        *--at = static_cast<WideChar>(digit < 10 ? u'0' + digit : u'a' + digit - 10);
        value /= base_;
    } while (value != 0);
    text_.Append(std::u16string_view(at, std::end(digits)));
    return *this;
}

}  // namespace Harbor
