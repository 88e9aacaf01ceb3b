// The stream of a log statement: 16-bit text with the default formatting of the standard library's streams. If memory
// runs out, an insertion throws std::bad_alloc.
#pragma once

#include <concepts>
#include <ios>
#include <string_view>

#include "Common/Base/TextBuffer.h"

namespace Harbor {

class WideStream {
public:
    WideStream& operator<<(std::u16string_view text) {
        text_.Append(text);
        return *this;
    }
    WideStream& operator<<(const WideString& text) { return *this << std::u16string_view(text); }
    WideStream& operator<<(const WideChar* text) {  // null prints "(null)"
        return *this << (text == nullptr ? std::u16string_view(u"(null)") : std::u16string_view(text));
    }
    WideStream& operator<<(WideChar c) {
        text_.Append(c);
        return *this;
    }
    WideStream& operator<<(char c) { return *this << static_cast<WideChar>(static_cast<unsigned char>(c)); }
    WideStream& operator<<(const char* text);  // UTF-8; null prints "(null)"

    WideStream& operator<<(bool value) { return *this << (value ? u'1' : u'0'); }
    WideStream& operator<<(double value);
    template <std::integral T>
    WideStream& operator<<(T value) {
        if constexpr (std::signed_integral<T>) {
            if (base_ == 10) return AppendDecimal(value);
        }
        return AppendNumber(static_cast<std::make_unsigned_t<T>>(value));
    }

    // Prints 16 upper-case hexadecimal digits in every base.
    WideStream& operator<<(const void* pointer);

    // std::dec, std::hex and std::oct set the base of the numbers that are inserted after them.
    WideStream& operator<<(std::ios_base& (*manipulator)(std::ios_base&)) noexcept;

    std::u16string_view View() const noexcept { return text_.View(); }
    WideString Text() const { return WideString(View()); }

private:
    WideStream& AppendDecimal(std::int64_t value);  // with its sign
    WideStream& AppendNumber(std::uint64_t value);  // in the stream's base

    TextBuffer text_;
    unsigned base_ = 10;
};

}  // namespace Harbor
