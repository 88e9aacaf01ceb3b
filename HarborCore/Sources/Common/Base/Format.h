// printf for 16-bit text, type-safe, with the conversions that this code uses: %u %d %x %X with the flag "0", a width
// and the size prefix I64; %s; and %p, which gives 16 upper-case hexadecimal digits, with "0X" before them as "%#p". A
// null text prints "(null)".
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

    std::uint64_t Unsigned() const noexcept;  // cut to the size of the value that was given
    std::int64_t Signed() const noexcept;     // with its sign
    std::u16string_view Text() const noexcept { return text_; }

private:
    std::uint64_t bits_ = 0;
    std::size_t size_ = 0;
    std::u16string_view text_;
};

// The formats are constants of this code: one that asks for more arguments than there are throws std::out_of_range.
[[nodiscard]] WideString FormatWideArguments(std::u16string_view format,
                                             std::initializer_list<FormatArgument> arguments);

template <class... Arguments>
[[nodiscard]] WideString FormatWide(std::u16string_view format, const Arguments&... arguments) {
    return FormatWideArguments(format, {FormatArgument(arguments)...});
}

}  // namespace Harbor
