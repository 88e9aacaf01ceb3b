#include "Host/Base/TextWidth.h"

#include <algorithm>
#include <array>

namespace Host {
namespace {

struct Range {
    char32_t first, last;
};
constexpr Range CombiningMarks{0x300, 0x36F};
constexpr std::array WideCharacters{Range{0x1100, 0x115F}, Range{0x2E80, 0xA4CF},   Range{0xAC00, 0xD7A3},
                                    Range{0xF900, 0xFAFF}, Range{0xFE30, 0xFE6F},   Range{0xFF00, 0xFF60},
                                    Range{0xFFE0, 0xFFE6}, Range{0x1F300, 0x1FAFF}, Range{0x20000, 0x3FFFD}};

constexpr bool IsIn(const Range& range, char32_t character) noexcept {
    return character >= range.first && character <= range.last;
}

constexpr bool IsContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The length in bytes of the first character, which may be incomplete.
std::size_t FirstCharacter(std::string_view text) noexcept {
    constexpr std::size_t longest = 4;
    std::size_t length = 1;
    while (length < std::min(text.size(), longest) && IsContinuation(text[length])) ++length;
    return length;
}

std::size_t WidthOf(std::string_view character) noexcept {
    const auto lead = static_cast<unsigned char>(character.front());
    char32_t code = character.size() == 1 ? lead : lead & (0xFFu >> (character.size() + 1));
    for (const char byte : character.substr(1)) code = code << 6 | (static_cast<unsigned char>(byte) & 0x3F);
    if (IsIn(CombiningMarks, code)) return 0;
    return std::ranges::any_of(WideCharacters, [&](const Range& range) { return IsIn(range, code); }) ? 2 : 1;
}

}  // namespace

std::size_t ColumnsOf(std::string_view text) noexcept {
    std::size_t columns = 0;
    while (!text.empty()) {
        const std::size_t length = FirstCharacter(text);
        columns += WidthOf(text.substr(0, length));
        text.remove_prefix(length);
    }
    return columns;
}

std::string_view BeginningOf(std::string_view text, std::size_t columns) noexcept {
    std::size_t size = 0;
    for (std::size_t taken = 0; size < text.size();) {
        const std::size_t length = FirstCharacter(text.substr(size));
        taken += WidthOf(text.substr(size, length));
        if (taken > columns) break;
        size += length;
    }
    return text.substr(0, size);
}

std::string_view EndOf(std::string_view text, std::size_t columns) noexcept {
    while (ColumnsOf(text) > columns) text.remove_prefix(FirstCharacter(text));
    return text;
}

std::string Padded(std::string text, std::size_t columns) {
    return text.append(columns - std::min(columns, ColumnsOf(text)), ' ');
}

std::string RightAligned(const std::string& text, std::size_t columns) {
    return std::string(columns - std::min(columns, ColumnsOf(text)), ' ') + text;
}

}  // namespace Host
