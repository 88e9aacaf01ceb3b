#include <algorithm>
#include <optional>
#include <string_view>

#include "Failure.h"
#include "Platform/Environment.h"
#include "TextEncoding.h"
#include "WideText.h"

namespace Platform {

namespace {

using namespace Common;

bool IsComment(std::u16string_view line) noexcept {
    return line.starts_with(u';');
}

std::optional<std::u16string_view> SectionName(std::u16string_view line) noexcept {
    const std::size_t end = line.find(u']');
    if (!line.starts_with(u'[') || end == std::u16string_view::npos) return std::nullopt;
    return TrimBlanks(line.substr(1, end - 1));
}

std::u16string_view WithoutQuotes(std::u16string_view value) noexcept {
    const bool quoted =
        value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') && value.front() == value.back();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

// Removes the text up to and including the section's heading. Returns false if there is no such section.
bool SkipToSection(std::u16string_view& text, std::u16string_view section) noexcept {
    while (const auto line = TakeLine(text)) {
        const auto name = SectionName(TrimBlanks(*line));
        if (name && EqualIgnoringCase(*name, section)) return true;
    }
    return false;
}

std::optional<std::u16string_view> FindValue(std::u16string_view text, std::u16string_view section,
                                             std::u16string_view key) noexcept {
    if (!SkipToSection(text, section)) return std::nullopt;
    while (const auto rawLine = TakeLine(text)) {
        const std::u16string_view line = TrimBlanks(*rawLine);
        if (SectionName(line)) return std::nullopt;
        const std::size_t sign = line.find(u'=');
        if (IsComment(line) || sign == std::u16string_view::npos) continue;
        if (EqualIgnoringCase(TrimBlanks(line.substr(0, sign)), key))
            return WithoutQuotes(TrimBlanks(line.substr(sign + 1)));
    }
    return std::nullopt;
}

DWORD CopyCut(std::u16string_view text, WideChar* buffer, DWORD size) noexcept {
    const std::size_t length = std::min<std::size_t>(text.size(), size - 1);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = u'\0';
    return static_cast<DWORD>(length);
}

}  // namespace

DWORD GetPrivateProfileStringW(const WideChar* section, const WideChar* key, const WideChar* defaultValue,
                               WideChar* buffer, DWORD size, const WideChar* path) noexcept {
    if (buffer == nullptr || size == 0) return 0;
    buffer[0] = u'\0';
    return OrOutOfMemory(DWORD{0}, [&] {
        std::optional<std::u16string_view> value;
        WideString text;
        if (section == nullptr || key == nullptr || path == nullptr) {
            SetLastError(ERROR_INVALID_PARAMETER);
        } else if (const DWORD error = ReadTextFile(path, text); error != ERROR_SUCCESS) {
            SetLastError(error);
        } else {
            value = FindValue(text, section, key);
            if (!value) SetLastError(ERROR_FILE_NOT_FOUND);
        }
        return CopyCut(value.value_or(defaultValue != nullptr ? defaultValue : u""), buffer, size);
    });
}

}  // namespace Platform
