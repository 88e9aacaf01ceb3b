#include "Host/Log/SlowestCalls.h"

#include <algorithm>

#include "Common/Base/Text.h"

namespace Host {
namespace {

constexpr std::u16string_view Return = u"Exiting: ";
constexpr std::u16string_view Exception = u"EXCEPTION at: ";
// The method that runs the worker takes as long as the manager lives.
constexpr std::u16string_view WorkerMethod = u"DataCollection::ActionManagement::ActionManager::Start";
constexpr std::u16string_view TimeBegin = u" [";
constexpr std::u16string_view TimeEnd = u" ms]";
constexpr std::size_t Decimals = 3;
constexpr std::size_t MostDigits = 18;  // of a 64-bit number

// "1 234.567"
std::optional<std::int64_t> ParseMicroseconds(std::u16string_view text) {
    if (text.size() <= Decimals + 1 || text[text.size() - Decimals - 1] != u'.') return std::nullopt;
    std::u16string digits(text);
    digits.erase(digits.size() - Decimals - 1, 1);
    std::erase(digits, u' ');
    const auto isDigit = [](char16_t c) { return c >= u'0' && c <= u'9'; };
    if (digits.size() > MostDigits || !std::ranges::all_of(digits, isDigit)) return std::nullopt;
    std::int64_t number = 0;
    for (const char16_t digit : digits) number = number * 10 + (digit - u'0');
    return number;
}

}  // namespace

std::optional<TracedCall> ParseTracedCall(std::u16string_view message) {
    message = Harbor::Trim(message, u" ");
    const bool exception = message.starts_with(Exception);
    if (!exception && !message.starts_with(Return)) return std::nullopt;
    message.remove_prefix(exception ? Exception.size() : Return.size());
    const std::size_t begin = message.rfind(TimeBegin);
    if (begin == message.npos || !message.ends_with(TimeEnd)) return std::nullopt;
    const std::u16string_view time = message.substr(begin + TimeBegin.size());
    if (time.size() < TimeEnd.size()) return std::nullopt;
    const auto microseconds = ParseMicroseconds(time.substr(0, time.size() - TimeEnd.size()));
    if (!microseconds) return std::nullopt;
    return TracedCall{message.substr(0, begin), *microseconds, exception};
}

void SlowestCalls::Add(const LogEntry& entry) {
    const auto call = ParseTracedCall(entry.message);
    if (!call || call->name == WorkerMethod || count_ == 0) return;
    if (calls_.size() == count_) {
        const auto fastest = std::prev(calls_.end());
        if (call->microseconds <= fastest->first) return;
        calls_.erase(fastest);
    }
    calls_.emplace(call->microseconds, Call{Harbor::ToUtf8(call->name), call->exception, std::u16string(entry.time),
                                            entry.process, entry.thread});
}

}  // namespace Host
