#include "XmlWriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

namespace NodeFabric {

using namespace Harbor;

namespace {

constexpr char32_t Replacement = 0xFFFD;

// Deeper levels are not indented further, or the dump of a deep chain would be mostly blanks.
constexpr std::size_t LargestIndentedLevel = 32;
constexpr std::size_t BlanksALevel = 2;

constexpr auto AsciiTexts = [] {
    std::array<std::string_view, 128> texts{};  // empty: the character as it is
    for (std::size_t control = 0; control < 0x20; ++control) texts[control] = "\xEF\xBF\xBD";
    texts['\t'] = "&#9;";
    texts['\n'] = "&#10;";
    texts['\r'] = "&#13;";
    texts['&'] = "&amp;";
    texts['<'] = "&lt;";
    texts['>'] = "&gt;";
    texts['"'] = "&quot;";
    return texts;
}();

constexpr std::string_view TypeName(std::uint16_t type) {
    switch (type) {
        case AcnTypeInt32:
            return "int32";
        case AcnTypeUInt32:
            return "uint32";
        case AcnTypeInt64:
            return "int64";
        case AcnTypeBool:
            return "bool";
        default:
            return "text";
    }
}

constexpr bool IsHighSurrogate(char32_t c) {
    return (c & 0xFC00) == 0xD800;
}
constexpr bool IsLowSurrogate(char32_t c) {
    return (c & 0xFC00) == 0xDC00;
}

// Reads one character that is not ASCII and moves `index` after it. XML's forbidden characters are replaced.
char32_t DecodeWide(std::u16string_view text, std::size_t& index) {
    const char32_t first = text[index++];
    if (IsHighSurrogate(first) && index < text.size() && IsLowSurrogate(text[index])) {
        return 0x10000 + ((first - 0xD800) << 10) + (text[index++] - 0xDC00u);
    }
    const bool forbidden = IsHighSurrogate(first) || IsLowSurrogate(first) || first >= 0xFFFE;
    return forbidden ? Replacement : first;
}

char* Put(char* place, std::string_view text) {
    return place + text.copy(place, text.size());
}

// For characters from 0x80 up.
char* PutUtf8(char* place, char32_t c) {
    const auto tail = [c](unsigned shift) { return static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x800) {
        *place++ = static_cast<char>(0xC0 | (c >> 6));
    } else if (c < 0x10000) {
        *place++ = static_cast<char>(0xE0 | (c >> 12));
        *place++ = tail(6);
    } else {
        *place++ = static_cast<char>(0xF0 | (c >> 18));
        *place++ = tail(12);
        *place++ = tail(6);
    }
    *place++ = tail(0);
    return place;
}

}  // namespace

bool XmlWriter::BeginNode(const AcnNodeOpaque& node, std::size_t level, bool withChildren) {
    Indent(level);
    out_ += "<node name=\"";
    WriteEscaped(node.name);
    out_ += "\" type=\"";
    WriteEscaped(node.type);
    const std::lock_guard lock(node.attributesLock);
    if (node.attributes.Empty() && !withChildren) {
        out_ += "\"/>\n";
        return false;
    }
    out_ += "\">\n";
    for (const Attribute& attribute : node.attributes) WriteAttribute(attribute, level + 1);
    if (!withChildren) EndNode(level);
    return withChildren;
}

void XmlWriter::EndNode(std::size_t level) {
    Indent(level);
    out_ += "</node>\n";
}

void XmlWriter::Indent(std::size_t level) {
    out_.append(BlanksALevel * std::min(level, LargestIndentedLevel), ' ');
}

void XmlWriter::WriteAttribute(const Attribute& attribute, std::size_t level) {
    Indent(level);
    out_ += "<attribute name=\"";
    WriteEscaped(attribute.name);
    out_ += "\" type=\"";
    out_ += TypeName(attribute.value.type);
    out_ += "\" value=\"";
    WriteValue(attribute.value);
    out_ += "\"/>\n";
}

void XmlWriter::WriteValue(const AttributeValue& value) {
    if (IsTextType(value.type)) {
        WriteEscaped(value.text);
    } else if (value.type == AcnTypeBool) {
        out_ += value.number != 0 ? "true" : "false";
    } else {
        std::array<char, 24> digits;
        const auto end = std::to_chars(digits.begin(), digits.end(), value.number).ptr;
        out_.append(digits.begin(), end);
    }
}

void XmlWriter::WriteEscaped(std::u16string_view text) {
    constexpr std::size_t longestCharacter = 6;  // &quot;
    std::array<char, 512> piece;
    char* const full = piece.end() - longestCharacter;
    char* place = piece.begin();
    for (std::size_t index = 0; index < text.size();) {
        if (const char16_t c = text[index]; c >= AsciiTexts.size()) {
            place = PutUtf8(place, DecodeWide(text, index));
        } else {
            if (AsciiTexts[c].empty()) {
                *place++ = static_cast<char>(c);
            } else {
                place = Put(place, AsciiTexts[c]);
            }
            ++index;
        }
        if (place > full) {
            out_.append(piece.begin(), place);
            place = piece.begin();
        }
    }
    out_.append(piece.begin(), place);
}

}  // namespace NodeFabric
