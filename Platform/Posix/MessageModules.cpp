#include "MessageModules.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/Errors.h"
#include "TextFile.h"
#include "WideText.h"

namespace Platform::Posix {

using namespace Common;

namespace {

constexpr std::uint16_t AnyLanguage = 0;
constexpr std::uint16_t English = 0x0409;

struct Message {
    DWORD code;
    std::uint16_t language;
    WideString text;
};
using MessageModule = std::vector<Message>;  // sorted by code; messages of one code keep the order of the file

std::u16string_view TakeField(std::u16string_view& line) noexcept {
    const std::u16string_view field = line.substr(0, line.find(u'\t'));
    line.remove_prefix(std::min(field.size() + 1, line.size()));
    return field;
}

std::optional<std::uint32_t> ParseHexadecimal(std::u16string_view text) noexcept {
    const bool isPrefixed = text.starts_with(u"0x") || text.starts_with(u"0X");
    return isPrefixed ? ParseDigits(text.substr(2), 16) : std::nullopt;
}

std::optional<std::uint32_t> ParseLanguage(std::u16string_view text) noexcept {
    const std::optional<std::uint32_t> hexadecimal = ParseHexadecimal(text);
    const std::optional<std::uint32_t> language = hexadecimal ? hexadecimal : ParseDigits(text, 10);
    return language && *language <= 0xFFFF ? language : std::nullopt;
}

std::optional<WideString> Unescape(std::u16string_view text) {
    WideString result;
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find(u'\\'), text.size());
        result += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty()) break;
        if (text.starts_with(u"\\n")) {
            result += u'\n';
        } else if (text.starts_with(u"\\t")) {
            result += u'\t';
        } else if (text.starts_with(u"\\\\")) {
            result += u'\\';
        } else {
            return std::nullopt;
        }
        text.remove_prefix(2);
    }
    return result;
}

std::optional<Message> ParseMessage(std::u16string_view line) {
    const std::optional<std::uint32_t> code = ParseHexadecimal(TakeField(line));
    const std::optional<std::uint32_t> language = ParseLanguage(TakeField(line));
    std::optional<WideString> text = Unescape(line);
    if (!code || !language || !text || text->empty()) return std::nullopt;
    return Message{*code, static_cast<std::uint16_t>(*language), *std::move(text)};
}

std::optional<MessageModule> ParseModule(std::u16string_view text) {
    MessageModule messages;
    while (const auto line = TakeLine(text)) {
        if (TrimBlanks(*line).empty() || line->starts_with(u';')) continue;
        std::optional<Message> message = ParseMessage(*line);
        if (!message) return std::nullopt;
        messages.push_back(*std::move(message));
    }
    std::stable_sort(messages.begin(), messages.end(),
                     [](const Message& a, const Message& b) { return a.code < b.code; });
    return messages;
}

const Message* FindMessage(const MessageModule& messages, DWORD code, DWORD language) noexcept {
    const auto first = std::lower_bound(messages.begin(), messages.end(), code,
                                        [](const Message& message, DWORD wanted) { return message.code < wanted; });
    const auto last = std::find_if(first, messages.end(), [code](const Message& m) { return m.code != code; });
    const auto inLanguage = [first, last](DWORD wanted) -> const Message* {
        const auto message = std::find_if(first, last, [wanted](const Message& m) { return m.language == wanted; });
        return message != last ? &*message : nullptr;
    };
    if (const Message* const exact = inLanguage(language)) return exact;
    if (language != AnyLanguage) return inLanguage(AnyLanguage);
    if (const Message* const english = inLanguage(English)) return english;
    return first != last ? &*first : nullptr;
}

// The open modules. The address of a module is its handle. A module that is closed stays alive for the calls that use
// it.
class ModuleList {
public:
    HMODULE Add(MessageModule messages) {
        auto module = std::make_shared<const MessageModule>(std::move(messages));
        const HMODULE handle = HandleOf(module);
        const std::unique_lock guard(lock_);
        modules_.push_back(std::move(module));
        return handle;
    }
    bool Remove(HMODULE handle) noexcept {
        const std::unique_lock guard(lock_);
        return std::erase_if(modules_, [handle](const Entry& entry) { return HandleOf(entry) == handle; }) != 0;
    }
    std::shared_ptr<const MessageModule> Find(HMODULE handle) const noexcept {
        const std::shared_lock guard(lock_);
        const auto entry = std::find_if(modules_.begin(), modules_.end(),
                                        [handle](const Entry& candidate) { return HandleOf(candidate) == handle; });
        return entry != modules_.end() ? *entry : nullptr;
    }

private:
    using Entry = std::shared_ptr<const MessageModule>;

    static HMODULE HandleOf(const Entry& entry) noexcept {
        return reinterpret_cast<HMODULE>(reinterpret_cast<std::uintptr_t>(entry.get()));
    }

    mutable std::shared_mutex lock_;
    std::vector<Entry> modules_;
};

ModuleList OpenModules;

DWORD OpenError(int errorNumber) noexcept {
    return errorNumber == ENOENT || errorNumber == ENOTDIR ? ERROR_MOD_NOT_FOUND : ERROR_ACCESS_DENIED;
}

}  // namespace

HMODULE OpenMessageModule(const std::string& nativePath, DWORD& error) noexcept {
    try {
        WideString text;
        int errorNumber = 0;
        if (!ReadTextFile(nativePath, text, errorNumber)) {
            error = OpenError(errorNumber);
            return nullptr;
        }
        if (std::optional<MessageModule> messages = ParseModule(text)) return OpenModules.Add(*std::move(messages));
        error = ERROR_BAD_EXE_FORMAT;
    } catch (const std::exception&) {
        error = ERROR_NOT_ENOUGH_MEMORY;
    }
    return nullptr;
}

bool CloseMessageModule(HMODULE module) noexcept {
    return OpenModules.Remove(module);
}

std::optional<WideString> MessageModuleText(HMODULE module, DWORD code, DWORD language, DWORD& error) {
    const std::shared_ptr<const MessageModule> messages = OpenModules.Find(module);
    if (messages == nullptr) {
        error = ERROR_RESOURCE_TYPE_NOT_FOUND;
        return std::nullopt;
    }
    const Message* const message = FindMessage(*messages, code, language);
    if (message == nullptr) {
        error = ERROR_MR_MID_NOT_FOUND;
        return std::nullopt;
    }
    return message->text;
}

}  // namespace Platform::Posix
