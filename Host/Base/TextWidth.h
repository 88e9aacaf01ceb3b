// The width of texts on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace Host {

// The number of columns that a UTF-8 text takes: two for a wide character of East Asian scripts or an emoji, none for a
// combining mark, one for any other character.
[[nodiscard]] std::size_t ColumnsOf(std::string_view text) noexcept;

// Returns the longest beginning of the text that takes no more columns.
[[nodiscard]] std::string_view BeginningOf(std::string_view text, std::size_t columns) noexcept;
// Returns the longest end of the text that takes no more columns.
[[nodiscard]] std::string_view EndOf(std::string_view text, std::size_t columns) noexcept;

// Appends spaces until the text takes that many columns.
[[nodiscard]] std::string Padded(std::string text, std::size_t columns);
// Puts spaces before the text until it takes that many columns.
[[nodiscard]] std::string RightAligned(const std::string& text, std::size_t columns);

}  // namespace Host
