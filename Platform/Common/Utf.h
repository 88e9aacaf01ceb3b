// Conversion between UTF-8 and UTF-16 by one strict decoder of each. Malformed input becomes U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace Platform::Common {

// The result of the two functions below for malformed input. It is not a code point.
inline constexpr char32_t MalformedCharacter = 0xFFFFFFFF;
inline constexpr char32_t ReplacementCharacter = 0xFFFD;

// Remove one character from the front of a text, which must not be empty, and return it. Of malformed input they remove
// the longest piece that could begin a character, but at least one unit.
char32_t TakeUtf8(std::string_view& text) noexcept;
char32_t TakeUtf16(std::u16string_view& text) noexcept;

// The units of one character, which must be a code point but not a surrogate.
struct Utf8Units {
    char units[4];
    std::size_t length;
};
struct Utf16Units {
    char16_t units[2];
    std::size_t length;
};
Utf8Units EncodeUtf8(char32_t character) noexcept;
Utf16Units EncodeUtf16(char32_t character) noexcept;

// Throw std::bad_alloc.
std::string ToUtf8(std::u16string_view text);
std::u16string ToWide(std::string_view text);

}  // namespace Platform::Common
