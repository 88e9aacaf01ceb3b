// Small operations for the readers of text files.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Platform::Common {

// Ignores the case of ASCII letters.
[[nodiscard]] bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept;

// Removes blanks and tabs at both ends.
[[nodiscard]] std::u16string_view TrimBlanks(std::u16string_view text) noexcept;

// Removes the first line and its end (CR LF, LF or CR) from the front of a text. Returns the line without its end, or
// nothing if the text is empty.
[[nodiscard]] std::optional<std::u16string_view> TakeLine(std::u16string_view& text) noexcept;

// Parses digits in base 10 or 16. Returns nothing for an empty text, for any other character, or above 32 bits.
[[nodiscard]] std::optional<std::uint32_t> ParseDigits(std::u16string_view digits, unsigned base) noexcept;

}  // namespace Platform::Common
