#include "Utf.h"

namespace Platform::Common {

namespace {

constexpr char32_t FirstSurrogate = 0xD800;
constexpr char32_t FirstLowSurrogate = 0xDC00;
constexpr char32_t LastSurrogate = 0xDFFF;

// The meaning of a first byte: the number of bytes that follow, its payload, and the bounds of the next byte, which
// exclude overlong forms, surrogates and values above U+10FFFF.
struct LeadByte {
    unsigned followers;
    char32_t payload;
    unsigned char least, most;
};

LeadByte ReadLeadByte(unsigned char byte) noexcept {
    constexpr unsigned char leastFollower = 0x80, mostFollower = 0xBF;
    if (byte < 0xC2 || byte > 0xF4) return {0, MalformedCharacter, leastFollower, mostFollower};
    if (byte < 0xE0) return {1, byte & 0x1Fu, leastFollower, mostFollower};
    if (byte < 0xF0) {
        return {2, byte & 0x0Fu, byte == 0xE0 ? static_cast<unsigned char>(0xA0) : leastFollower,
                byte == 0xED ? static_cast<unsigned char>(0x9F) : mostFollower};
    }
    return {3, byte & 0x07u, byte == 0xF0 ? static_cast<unsigned char>(0x90) : leastFollower,
            byte == 0xF4 ? static_cast<unsigned char>(0x8F) : mostFollower};
}

bool IsSurrogate(char32_t unit) noexcept {
    return unit >= FirstSurrogate && unit <= LastSurrogate;
}

}  // namespace

char32_t TakeUtf8(std::string_view& text) noexcept {
    const auto first = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if (first < 0x80) return first;

    LeadByte lead = ReadLeadByte(first);
    if (lead.payload == MalformedCharacter) return MalformedCharacter;
    for (; lead.followers > 0; --lead.followers) {
        if (text.empty()) return MalformedCharacter;
        const auto byte = static_cast<unsigned char>(text.front());
        if (byte < lead.least || byte > lead.most) return MalformedCharacter;
        text.remove_prefix(1);
        lead = {lead.followers, lead.payload << 6 | (byte & 0x3Fu), 0x80, 0xBF};
    }
    return lead.payload;
}

char32_t TakeUtf16(std::u16string_view& text) noexcept {
    const char32_t unit = text.front();
    text.remove_prefix(1);
    if (!IsSurrogate(unit)) return unit;
    if (unit >= FirstLowSurrogate || text.empty()) return MalformedCharacter;

    const char32_t low = text.front();
    if (low < FirstLowSurrogate || low > LastSurrogate) return MalformedCharacter;
    text.remove_prefix(1);
    return 0x10000 + ((unit - FirstSurrogate) << 10 | (low - FirstLowSurrogate));
}

Utf8Units EncodeUtf8(char32_t character) noexcept {
    const auto tail = [character](unsigned shift) { return static_cast<char>(0x80 | (character >> shift & 0x3F)); };
    const auto lead = [character](unsigned mark, unsigned shift) {
        return static_cast<char>(mark | character >> shift);
    };
    if (character < 0x80) return {{static_cast<char>(character)}, 1};
    if (character < 0x800) return {{lead(0xC0, 6), tail(0)}, 2};
    if (character < 0x10000) return {{lead(0xE0, 12), tail(6), tail(0)}, 3};
    return {{lead(0xF0, 18), tail(12), tail(6), tail(0)}, 4};
}

Utf16Units EncodeUtf16(char32_t character) noexcept {
    if (character < 0x10000) return {{static_cast<char16_t>(character)}, 1};
    const char32_t offset = character - 0x10000;
    return {{static_cast<char16_t>(FirstSurrogate + (offset >> 10)),
             static_cast<char16_t>(FirstLowSurrogate + (offset & 0x3FF))},
            2};
}

std::string ToUtf8(std::u16string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const char32_t character = TakeUtf16(text);
        const Utf8Units encoded = EncodeUtf8(character == MalformedCharacter ? ReplacementCharacter : character);
        result.append(encoded.units, encoded.length);
    }
    return result;
}

std::u16string ToWide(std::string_view text) {
    std::u16string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const char32_t character = TakeUtf8(text);
        const Utf16Units encoded = EncodeUtf16(character == MalformedCharacter ? ReplacementCharacter : character);
        result.append(encoded.units, encoded.length);
    }
    return result;
}

}  // namespace Platform::Common
