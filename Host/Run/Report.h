// The output of a run: a line for each call, and the summary.
#pragma once

#include <string>
#include <vector>

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

    // The status line shows what is due next, how many calls there were, and how late they were. It exists only on a
    // terminal and in the format for people.
    [[nodiscard]] bool HasStatusLine() const noexcept { return output_.IsTerminal() && format_ == OutputFormat::Text; }
    void SetStatusLine(const std::vector<RegistrationState>& registrations);
    void RemoveStatusLine();

private:
    const OutputFormat format_;
    ConsoleOutput& output_;
};

}  // namespace Host
