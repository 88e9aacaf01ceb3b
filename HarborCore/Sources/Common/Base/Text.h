// Small operations on 16-bit text. If memory runs out, they throw std::bad_alloc.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Harbor/Text.h"

namespace Harbor {

inline constexpr std::u16string_view WhiteSpace = u" \r\n\t\v\f";

// Trim removes the characters of `set` from both ends, TrimEnd from the end. The result borrows from `text`.
[[nodiscard]] std::u16string_view Trim(std::u16string_view text, std::u16string_view set = WhiteSpace) noexcept;
[[nodiscard]] std::u16string_view TrimEnd(std::u16string_view text, std::u16string_view set = WhiteSpace) noexcept;

// Returns the pieces between the characters of `separators`, without the empty ones. The pieces borrow from `text`.
[[nodiscard]] std::vector<std::u16string_view> Split(std::u16string_view text, std::u16string_view separators);

// Both compare character by character and ignore the case of ASCII letters. CompareIgnoreCase returns a number below,
// equal to or above 0.
[[nodiscard]] bool EqualsIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept;
[[nodiscard]] int CompareIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept;

struct ParsedNumber {
    std::uint32_t value = 0;
    std::size_t consumed = 0;  // characters that were read; 0 if there is no number
};
// Reads a number at the beginning of a text as wcstoul does with base 0: after white space, with an optional sign and
// the prefix 0x or 0. A number of more than 32 bits is read as 0xFFFFFFFF.
[[nodiscard]] ParsedNumber ParseNumber(std::u16string_view text) noexcept;

}  // namespace Harbor
