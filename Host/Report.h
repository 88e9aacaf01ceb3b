// What the host puts out: one line a call, and the summary.
#pragma once

#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

#include "Host/AliveObjects.h"
#include "Host/LatenessStatistics.h"
#include "Host/LocalTime.h"
#include "Host/Style.h"
#include "Host/Terminal.h"

namespace Host {

struct Call {
    TimePoint time;
    std::string registration;  // as it stood on the command line
    std::string action;
    std::optional<Ticks> lateness;  // since the due moment; nothing if that isn't known
};

struct RegistrationState {
    std::string registration;
    std::uint64_t calls = 0;
    std::optional<LatenessStatistics::Range> lateness;
    std::optional<TimePoint> nextDue;  // nothing where no schedule tells
};

// Any thread may call any operation; lines never mix.
class Report {
public:
    // `onBroken` is called, once for each failed line, when the stream takes no more. `terminal`: the one that the
    // stream writes to, if any.
    Report(std::ostream& out, Style style, const std::optional<Terminal>& terminal, std::function<void()> onBroken);

    void Add(const Call& call);
    void AddStatus(const std::vector<RegistrationState>& registrations);
    void AddSummary(const std::vector<RegistrationState>& registrations);
    void AddAlive(const AliveObjects& alive);

    // The status line stays below all others: what is due next, how many calls there were, and how late. Only a
    // terminal has one, and only for people.
    [[nodiscard]] bool HasStatusLine() const noexcept { return terminal_.has_value() && style_ == Style::Text; }
    void SetStatusLine(const std::vector<RegistrationState>& registrations);
    void RemoveStatusLine();

private:
    // Without a new status line the one that stands stays.
    void Write(const std::string& lines, std::optional<std::string> statusLine = std::nullopt);

    const Style style_;
    const std::optional<Terminal> terminal_;
    const std::function<void()> onBroken_;
    std::mutex lock_;  // guards the stream and the status line
    std::ostream& out_;
    std::string statusLine_;  // as it stands on the terminal
};

}  // namespace Host
