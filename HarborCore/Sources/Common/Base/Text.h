// Small operations on 16-bit text. Out of memory leaves them as std::bad_alloc.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Harbor/Types.h"

namespace Harbor {

inline constexpr std::u16string_view WhiteSpace = u" \r\n\t\v\f";

// The text without the characters of `set` at both ends, or at its end.
[[nodiscard]] std::u16string_view Trim(std::u16string_view text, std::u16string_view set = WhiteSpace) noexcept;
[[nodiscard]] std::u16string_view TrimEnd(std::u16string_view text, std::u16string_view set = WhiteSpace) noexcept;

// The pieces between the characters of `separators`; empty pieces are left out. The pieces borrow from `text`.
[[nodiscard]] std::vector<std::u16string_view> Split(std::u16string_view text, std::u16string_view separators);

// Compares letter by letter, ASCII letters without case.
[[nodiscard]] bool EqualsIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept;
// Below, equal or above 0 in the order of that comparison.
[[nodiscard]] int CompareIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept;

struct ParsedNumber {
    std::uint32_t value = 0;
    std::size_t consumed = 0;  // characters read; 0 if there is no number
};
// Reads a number at the beginning of a text as wcstoul does at base 0: white space, a sign and the prefixes 0x and 0
// are understood, and what exceeds 32 bits gives 0xFFFFFFFF.
[[nodiscard]] ParsedNumber ParseNumber(std::u16string_view text) noexcept;

// UTF-8 to 16-bit text and back. Malformed input becomes U+FFFD.
[[nodiscard]] WideString FromUtf8(std::string_view text);
[[nodiscard]] std::string ToUtf8(std::u16string_view text);

}  // namespace Harbor
