#include "RegistryFile.h"

#include <algorithm>
#include <utility>

#include "Platform/Registry.h"
#include "Utf.h"
#include "WideText.h"

namespace Platform::Posix {

using namespace Common;

namespace {

constexpr DWORD REG_BINARY = 3;
constexpr DWORD REG_MULTI_SZ = 7;

using Bytes = std::vector<std::uint8_t>;

bool IsText(DWORD type) noexcept {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

bool TakePrefix(std::u16string_view& text, std::u16string_view prefix) noexcept {
    if (!EqualIgnoringCase(text.substr(0, prefix.size()), prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

// Removes a quoted text from the front and returns it. In the text a quote or a "\" has a "\" before it.
std::optional<WideString> TakeQuoted(std::u16string_view& text) {
    if (!TakePrefix(text, u"\"")) return std::nullopt;
    WideString result;
    while (!text.empty()) {
        char16_t c = text.front();
        text.remove_prefix(1);
        if (c == u'"') return result;
        if (c == u'\\') {
            if (!text.starts_with(u'\\') && !text.starts_with(u'"')) return std::nullopt;
            c = text.front();
            text.remove_prefix(1);
        }
        result.push_back(c);
    }
    return std::nullopt;
}

void AppendUnit(Bytes& bytes, char16_t unit) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
}

Bytes TextBytes(std::u16string_view text) {
    Bytes bytes;
    bytes.reserve((text.size() + 1) * sizeof(char16_t));
    for (const char16_t unit : text) AppendUnit(bytes, unit);
    AppendUnit(bytes, u'\0');
    return bytes;
}

Bytes NumberBytes(std::uint32_t number) {
    Bytes bytes;
    AppendUnit(bytes, static_cast<char16_t>(number & 0xFFFF));
    AppendUnit(bytes, static_cast<char16_t>(number >> 16));
    return bytes;
}

std::optional<Bytes> ParseBytes(std::u16string_view list) {
    Bytes bytes;
    list = TrimBlanks(list);
    while (!list.empty()) {
        const std::size_t comma = std::min(list.find(u','), list.size());
        const std::optional<std::uint32_t> byte = ParseDigits(TrimBlanks(list.substr(0, comma)), 16);
        if (!byte || *byte > 0xFF) return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(*byte));
        list.remove_prefix(std::min(comma + 1, list.size()));
    }
    return bytes;
}

// Collects the values of one key in one pass over the text.
class KeyReader {
public:
    KeyReader(std::u16string_view text, std::u16string_view path) noexcept : rest_(text), path_(path) {}

    std::optional<std::vector<RegistryValue>> Read() && {
        while (const auto rawLine = TakeLine(rest_)) {
            const std::u16string_view line = TrimBlanks(*rawLine);
            if (line == u"REGEDIT4") {
                hasNarrowTexts_ = true;
            } else if (line.starts_with(u'[')) {
                BeginSection(line);
            } else if (isWithinKey_) {
                ReadValue(line);
            }
        }
        if (!isFound_) return std::nullopt;
        return std::move(values_);
    }

private:
    // A section below the key shows that the key exists. A deletion begins with "-" and so matches no key.
    void BeginSection(std::u16string_view line) noexcept {
        isWithinKey_ = false;
        if (!line.ends_with(u']')) return;
        std::u16string_view name = line.substr(1, line.size() - 2);
        if (!TakePrefix(name, path_)) return;
        isWithinKey_ = name.empty();
        isFound_ = isFound_ || isWithinKey_ || name.starts_with(u'\\');
    }

    void ReadValue(std::u16string_view line) {
        std::optional<WideString> name = TakePrefix(line, u"@") ? WideString() : TakeQuoted(line);
        line = TrimBlanks(line);
        if (!name || !TakePrefix(line, u"=")) return;
        if (auto value = ParseData(TrimBlanks(line))) Store({*std::move(name), value->first, std::move(value->second)});
    }

    std::optional<std::pair<DWORD, Bytes>> ParseData(std::u16string_view data) {
        if (TakePrefix(data, u"dword:")) {
            const auto number = ParseDigits(data, 16);
            return number ? std::optional(std::pair(REG_DWORD, NumberBytes(*number))) : std::nullopt;
        }
        if (TakePrefix(data, u"hex")) return ParseTypedBytes(data);
        const auto text = TakeQuoted(data);
        return text && data.empty() ? std::optional(std::pair(REG_SZ, TextBytes(*text))) : std::nullopt;
    }

    // `data` follows "hex": a type in parentheses, or none for plain bytes, then ":" and the bytes.
    std::optional<std::pair<DWORD, Bytes>> ParseTypedBytes(std::u16string_view data) {
        const WideString joined = JoinContinuedLines(data);
        data = joined;
        DWORD type = REG_BINARY;
        if (TakePrefix(data, u"(")) {
            const std::size_t end = std::min(data.find(u')'), data.size());
            const auto number = ParseDigits(data.substr(0, end), 16);
            if (!number) return std::nullopt;
            type = *number;
            data.remove_prefix(std::min(end + 1, data.size()));
        }
        if (!TakePrefix(data, u":")) return std::nullopt;
        std::optional<Bytes> bytes = ParseBytes(data);
        if (!bytes) return std::nullopt;
        return std::pair(type, IsText(type) ? TerminatedText(*std::move(bytes)) : *std::move(bytes));
    }

    WideString JoinContinuedLines(std::u16string_view first) {
        WideString joined(first);
        while (joined.ends_with(u'\\')) {
            joined.pop_back();
            if (const auto next = TakeLine(rest_)) joined += TrimBlanks(*next);
        }
        return joined;
    }

    // In the older format of the file the bytes of a text are in the narrow encoding.
    Bytes TerminatedText(Bytes bytes) const {
        if (hasNarrowTexts_) {
            WideString text = ToWide(std::string(bytes.begin(), bytes.end()));
            if (text.ends_with(u'\0')) text.pop_back();
            return TextBytes(text);
        }
        if (bytes.size() % 2 != 0) bytes.push_back(0);
        const bool isTerminated = bytes.size() >= 2 && bytes.back() == 0 && bytes[bytes.size() - 2] == 0;
        if (!isTerminated) AppendUnit(bytes, u'\0');
        return bytes;
    }

    void Store(RegistryValue value) {
        const auto same = std::find_if(values_.begin(), values_.end(), [&value](const RegistryValue& other) {
            return EqualIgnoringCase(other.name, value.name);
        });
        if (same == values_.end()) {
            values_.push_back(std::move(value));
        } else {
            *same = std::move(value);
        }
    }

    std::u16string_view rest_;
    const std::u16string_view path_;
    std::vector<RegistryValue> values_;
    bool hasNarrowTexts_ = false;
    bool isFound_ = false;
    bool isWithinKey_ = false;
};

}  // namespace

std::optional<std::vector<RegistryValue>> ReadRegistryKey(std::u16string_view text, std::u16string_view path) {
    return KeyReader(text, path).Read();
}

}  // namespace Platform::Posix
