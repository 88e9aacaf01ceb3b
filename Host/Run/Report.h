// The output of a run: a line for each call, and the summary.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Common/Base/Lock.h"
#include "Host/Base/OutputFormat.h"
#include "Host/Console/ConsoleOutput.h"
#include "Host/Log/LogEntry.h"
#include "Host/Run/AliveObjects.h"
#include "Host/Run/LatenessStatistics.h"
#include "Host/Schedules/LocalTime.h"

namespace Host {

struct Call {
    TimePoint time;
    std::string registration;  // its name, or how it was written
    std::string action;
    std::optional<Ticks> lateness;  // since the due time; nothing if that is not known
};

struct RegistrationState {
    std::string registration;
    std::uint64_t calls = 0;
    std::optional<std::uint64_t>
        merged{};  // intervals that were reached without a call of their own; nothing: no schedule
    std::optional<LatenessStatistics::Range> lateness{};
    std::optional<TimePoint> last{};     // the time of the last call
    std::optional<TimePoint> nextDue{};  // nothing if no schedule determines it
};

// Any thread may call any operation; lines never mix.
class Report {
public:
    // Borrows the output.
    Report(ConsoleOutput& output, OutputFormat format) noexcept : format_(format), output_(output) {}

    void Add(const Call& call);
    // A command at a path that no registration watches.
    void AddUnheard(std::u16string_view path, const TimePoint& time);
    // A warning or an error of the module.
    void AddModuleLine(const LogEntry& entry);
    // `now` is the time of the states.
    void AddStatus(const std::vector<RegistrationState>& registrations, const TimePoint& now);
    void AddSummary(const std::vector<RegistrationState>& registrations);
    void AddAlive(const AliveObjects& alive);
    void AddTree(const std::string& xml);

    // A line on the stream of messages, such as a failure of a command.
    void AddMessage(const std::string& lines) { output_.WriteMessage(lines); }

    // The status line shows what is due next, how many calls there were, and how late they were. It exists only on a
    // terminal and in the format for people, and is refreshed with each call. Below it are only lines that are typed.
    [[nodiscard]] bool HasStatusLine() const noexcept { return output_.IsTerminal() && format_ == OutputFormat::Text; }
    // Sets what the status line shows, before the first call. `states` is called on any thread until RemoveStatusLine.
    void ShowStatusOf(std::function<std::vector<RegistrationState>()> states);
    void RefreshStatusLine();
    void RemoveStatusLine();
    // The line that is being typed, and one that is complete.
    void SetTypedLine(const std::string& text) { output_.SetTypedLine(text); }
    void AddTypedLine(const std::string& line) { output_.Write("> " + line + "\n"); }

private:
    const OutputFormat format_;
    ConsoleOutput& output_;

    Harbor::Lock statesLock_;  // guards states_
    std::function<std::vector<RegistrationState>()> states_;
};

}  // namespace Host
