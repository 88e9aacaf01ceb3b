#include "Host/Run/Report.h"

#include <algorithm>
#include <array>
#include <functional>

#include "Common/Base/Text.h"
#include "Host/Base/Json.h"
#include "Host/Base/TextWidth.h"
#include "Host/Schedules/Duration.h"

namespace Host {
namespace {

std::string MillisecondsText(double value) {
    std::string text = std::to_string(value);
    text.resize(text.find('.') + 2);
    return text;
}

constexpr std::size_t RegistrationWidth = 28;
constexpr std::size_t ActionWidth = 12;
constexpr std::size_t NumberWidth = 10;

std::string TextLine(const Call& call) {
    const std::string late = call.lateness ? "+" + MillisecondsText(InMilliseconds(*call.lateness)) + " ms" : "-";
    return LocalTimeText(call.time) + "  " + Padded(call.registration, RegistrationWidth) + "  " +
           Padded(call.action, ActionWidth) + RightAligned(late, NumberWidth + 3) + "\n";
}

Json ToJson(const Call& call) {
    return {{"event", "call"},
            {"time", IsoTimeText(call.time)},
            {"registration", call.registration},
            {"action", call.action},
            {"latenessMs", JsonOrNull(call.lateness, InMilliseconds)}};
}

// Only the first line of the message: the rest of a long one, such as a tree, is in the log.
std::string TextLine(const LogEntry& entry) {
    constexpr std::size_t toMilliseconds = 23;
    const auto message = Harbor::Trim(entry.message, u" ");
    return Harbor::ToUtf8(entry.time.substr(0, toMilliseconds)) + "  " +
           Padded("module " + Harbor::ToUtf8(entry.severity), RegistrationWidth) + "  " +
           Harbor::ToUtf8(message.substr(0, message.find_first_of(u"\r\n"))) + "\n";
}

Json ToJson(const LogEntry& entry) {
    return {{"event", "log"},
            {"time", IsoLogTime(entry.time)},
            {"severity", Harbor::ToUtf8(entry.severity)},
            {"source", Harbor::ToUtf8(entry.source)},
            {"line", entry.line},
            {"message", Harbor::ToUtf8(Harbor::Trim(entry.message, u" "))}};
}

std::string SummaryLine(const std::string& registration, const std::array<std::string, 5>& columns) {
    std::string line = Padded(registration, RegistrationWidth);
    for (const std::string& column : columns) line += RightAligned(column, NumberWidth);
    return line + "\n";
}

std::string SummaryLine(const RegistrationState& state) {
    const auto number = [&](double LatenessStatistics::Range::*part) {
        return state.lateness ? MillisecondsText((*state.lateness).*part) : "-";
    };
    return SummaryLine(state.registration,
                       {std::to_string(state.calls), state.merged ? std::to_string(*state.merged) : "-",
                        number(&LatenessStatistics::Range::min), number(&LatenessStatistics::Range::median),
                        number(&LatenessStatistics::Range::max)});
}

Json ToJson(const LatenessStatistics::Range& range) {
    return {{"min", range.min}, {"median", range.median}, {"max", range.max}};
}

Json SummaryJson(const RegistrationState& state) {
    return {{"event", "summary"},
            {"registration", state.registration},
            {"calls", state.calls},
            {"merged", JsonOrNull(state.merged, std::identity())},
            {"latenessMs", JsonOrNull(state.lateness, [](const auto& range) { return ToJson(range); })}};
}

// "22:04:58.460", or with its date and without seconds for another day than that of `now`.
std::string ShortTimeText(const TimePoint& time, const TimePoint& now) {
    constexpr std::size_t dateLength = 10, minuteLength = 16;
    const std::string text = LocalTimeText(time);
    const bool isToday = LocalTimeText(now).starts_with(text.substr(0, dateLength));
    return isToday ? text.substr(dateLength + 1) : text.substr(0, minuteLength);
}

// Whole seconds from a second on.
std::string TimeLeftText(const Ticks& left) {
    using namespace std::chrono;
    if (left <= Ticks::zero()) return "due";
    const bool isShort = left < seconds{1};
    return DurationText(isShort ? ceil<milliseconds>(left) : milliseconds{ceil<seconds>(left)});
}

std::string StatusLine(const std::string& registration, const std::array<std::string, 6>& columns) {
    constexpr std::array<std::size_t, 6> widths{9, 9, 18, 18, 12, 12};
    std::string line = Padded(registration, RegistrationWidth);
    for (std::size_t i = 0; i < columns.size(); ++i) line += RightAligned(columns[i], widths[i]);
    return line + "\n";
}

std::string StatusLine(const RegistrationState& state, const TimePoint& now) {
    const auto timeText = [&](const std::optional<TimePoint>& time) { return time ? ShortTimeText(*time, now) : "-"; };
    return StatusLine(state.registration,
                      {std::to_string(state.calls), state.merged ? std::to_string(*state.merged) : "-",
                       timeText(state.last), state.nextDue ? timeText(state.nextDue) : "on command",
                       state.nextDue ? TimeLeftText(*state.nextDue - now) : "-",
                       state.lateness ? MillisecondsText(state.lateness->max) + " ms" : "-"});
}

Json StatusJson(const RegistrationState& state, const TimePoint& now) {
    return {{"event", "status"},
            {"registration", state.registration},
            {"calls", state.calls},
            {"merged", JsonOrNull(state.merged, std::identity())},
            {"last", JsonOrNull(state.last, IsoTimeText)},
            {"nextDue", JsonOrNull(state.nextDue, IsoTimeText)},
            {"leftMs", JsonOrNull(state.nextDue, [&](const TimePoint& due) { return InMilliseconds(due - now); })},
            {"maxLatenessMs", JsonOrNull(state.lateness, [](const auto& range) { return range.max; })}};
}

std::string StatusSummary(const std::vector<RegistrationState>& registrations) {
    std::uint64_t calls = 0;
    double maxLateness = 0;
    const RegistrationState* next = nullptr;
    for (const RegistrationState& state : registrations) {
        calls += state.calls;
        if (state.lateness) maxLateness = std::max(maxLateness, state.lateness->max);
        if (state.nextDue && (next == nullptr || *state.nextDue < *next->nextDue)) next = &state;
    }
    return (next != nullptr ? "next " + LocalTimeText(*next->nextDue) + "  " + next->registration : "on command") +
           "  " + "calls " + std::to_string(calls) + ", max lateness " + MillisecondsText(maxLateness) + " ms";
}

// " (ActionImpl 2, ActionManager 1)"
std::string ClassesText(const std::map<std::string, std::uint32_t>& byClass) {
    std::string text;
    for (const auto& [name, count] : byClass) text += (text.empty() ? " (" : ", ") + name + " " + std::to_string(count);
    return text.empty() ? text : text + ")";
}

template <class Convert>
std::string Lines(const std::vector<RegistrationState>& registrations, Convert convert) {
    std::string lines;
    for (const RegistrationState& state : registrations) lines += convert(state);
    return lines;
}

}  // namespace

void Report::Add(const Call& call) {
    output_.Write(format_ == OutputFormat::Json ? JsonLine(ToJson(call)) : TextLine(call));
    RefreshStatusLine();
}

void Report::AddUnheard(std::u16string_view path, const TimePoint& time) {
    const std::string pathText = Harbor::ToUtf8(path);
    if (format_ == OutputFormat::Json) {
        output_.Write(JsonLine({{"event", "unheard"}, {"time", IsoTimeText(time)}, {"path", pathText}}));
    } else {
        output_.Write(LocalTimeText(time) + "  " + Padded("unheard command", RegistrationWidth) +
                      "  no registration watches " + pathText + "\n");
    }
}

void Report::AddModuleLine(const LogEntry& entry) {
    output_.Write(format_ == OutputFormat::Json ? JsonLine(ToJson(entry)) : TextLine(entry));
}

void Report::AddStatus(const std::vector<RegistrationState>& registrations, const TimePoint& now) {
    if (format_ == OutputFormat::Json) {
        output_.Write(Lines(registrations, [&](const auto& state) { return JsonLine(StatusJson(state, now)); }));
        return;
    }
    output_.Write(StatusLine("", {"calls", "merged", "last", "next", "left", "worst"}) +
                  Lines(registrations, [&](const auto& state) { return StatusLine(state, now); }));
}

void Report::AddSummary(const std::vector<RegistrationState>& registrations) {
    if (format_ == OutputFormat::Json) {
        output_.Write(Lines(registrations, [](const auto& state) { return JsonLine(SummaryJson(state)); }));
        return;
    }
    output_.Write("\n" + SummaryLine("lateness in ms", {"calls", "merged", "min", "median", "max"}) +
                  Lines(registrations, [](const auto& state) { return SummaryLine(state); }));
}

void Report::AddAlive(const AliveObjects& alive) {
    if (format_ == OutputFormat::Json) {
        output_.Write(JsonLine({{"event", "alive"},
                                {"moduleObjects", alive.inModule},
                                {"byClass", alive.byClass},
                                {"hostObjects", alive.inHost},
                                {"nodeHandles", alive.nodeHandles}}));
        return;
    }
    output_.Write("alive: " + std::to_string(alive.inModule) + " objects of the module" + ClassesText(alive.byClass) +
                  ", " + std::to_string(alive.inHost) + " of the host, " + std::to_string(alive.nodeHandles) +
                  " open node handles\n");
}

void Report::AddTree(const std::string& xml) {
    output_.Write(format_ == OutputFormat::Json ? JsonLine({{"event", "tree"}, {"xml", xml}}) : xml);
}

void Report::ShowStatusOf(std::function<std::vector<RegistrationState>()> states) {
    const Harbor::LockGuard lock(statesLock_);
    states_ = std::move(states);
}

void Report::RefreshStatusLine() {
    if (!HasStatusLine()) return;
    const Harbor::LockGuard lock(statesLock_);
    if (states_) output_.SetStatusLine(StatusSummary(states_()));
}

void Report::RemoveStatusLine() {
    const Harbor::LockGuard lock(statesLock_);
    states_ = nullptr;
    output_.SetTypedLine("");
    output_.SetStatusLine("");
}

}  // namespace Host
