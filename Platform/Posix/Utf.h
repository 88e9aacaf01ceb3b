// Conversion between UTF-8 and UTF-16 by one strict decoder of each: what is malformed becomes U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace Platform::Posix {

// What the two functions below give for malformed input. It is no code point.
inline constexpr char32_t MalformedCharacter = 0xFFFFFFFF;
inline constexpr char32_t ReplacementCharacter = 0xFFFD;

// Take one character off the front of a text that isn't empty. Of malformed input they take the longest piece that
// could have begun a character, at least one unit.
char32_t TakeUtf8(std::string_view& text) noexcept;
char32_t TakeUtf16(std::u16string_view& text) noexcept;

// The units of one character, which must be a code point that is no surrogate.
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

}  // namespace Platform::Posix
