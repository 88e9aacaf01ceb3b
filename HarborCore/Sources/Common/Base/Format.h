// A type-safe printf for 16-bit text. It has the conversions that this code uses: %u, %d, %x and %X, with the flag "0",
// a width and the size prefix I64; %s; and %p, which prints 16 upper-case hexadecimal digits, and prints "0X" before
// them in the form "%#p". A null text prints "(null)".
#pragma once

#include <concepts>
#include <initializer_list>

#include "Harbor/Types.h"

namespace Harbor {

class FormatArgument {
public:
    template <std::integral T>
    FormatArgument(T value) noexcept : bits_(static_cast<std::uint64_t>(value)), size_(sizeof(T)) {}
    FormatArgument(const WideChar* text) noexcept : text_(text == nullptr ? u"(null)" : text) {}
    FormatArgument(std::u16string_view text) noexcept : text_(text) {}
    FormatArgument(const WideString& text) noexcept : text_(text) {}
    FormatArgument(const void* pointer) noexcept
        : bits_(reinterpret_cast<std::uintptr_t>(pointer)), size_(sizeof(pointer)) {}

    std::uint64_t Unsigned() const noexcept;  // cut to the size of the argument
    std::int64_t Signed() const noexcept;
    std::u16string_view Text() const noexcept { return text_; }

private:
    std::uint64_t bits_ = 0;
    std::size_t size_ = 0;
    std::u16string_view text_;
};

// Throws std::out_of_range for an unknown conversion and for a format with more conversions than arguments: formats are
// constants of this code. If memory runs out, std::bad_alloc is thrown.
[[nodiscard]] WideString FormatWideArguments(std::u16string_view format,
                                             std::initializer_list<FormatArgument> arguments);

template <class... Arguments>
[[nodiscard]] WideString FormatWide(std::u16string_view format, const Arguments&... arguments) {
    return FormatWideArguments(format, {FormatArgument(arguments)...});
}

}  // namespace Harbor
