// The little that the readers of text files need to take lines apart.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Platform::Posix {

// The case of ASCII letters is ignored.
[[nodiscard]] bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept;

// Blanks and tabs go at both ends.
[[nodiscard]] std::u16string_view TrimBlanks(std::u16string_view text) noexcept;

// Takes the first line off the front of a text, its end included, which may be CR LF, LF or CR. Gives it without its
// end, or nothing if no text is left.
[[nodiscard]] std::optional<std::u16string_view> TakeLine(std::u16string_view& text) noexcept;

// A number of digits alone, in base 10 or 16. Nothing if there are none, others among them, or it exceeds 32 bits.
[[nodiscard]] std::optional<std::uint32_t> ParseDigits(std::u16string_view digits, unsigned base) noexcept;

}  // namespace Platform::Posix
