#include "TextEncoding.h"

#include "Utf.h"

namespace Platform::Common {

namespace {

WideString DecodeUtf16LittleEndian(std::string_view bytes) {
    WideString text;
    text.reserve(bytes.size() / 2 + 1);
    for (; bytes.size() >= 2; bytes.remove_prefix(2)) {
        const unsigned low = static_cast<unsigned char>(bytes[0]);
        const unsigned high = static_cast<unsigned char>(bytes[1]);
        text.push_back(static_cast<char16_t>(high << 8 | low));
    }
    if (!bytes.empty()) text.push_back(ReplacementCharacter);
    return text;
}

}  // namespace

WideString DecodeText(std::string_view bytes) {
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF", utf16Mark = "\xFF\xFE";
    if (bytes.starts_with(utf16Mark)) return DecodeUtf16LittleEndian(bytes.substr(utf16Mark.size()));
    if (bytes.starts_with(utf8Mark)) bytes.remove_prefix(utf8Mark.size());
    return ToWide(bytes);
}

}  // namespace Platform::Common
