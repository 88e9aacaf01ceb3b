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
    // `onBroken` is called, once for each failed line, when the stream takes no more.
    Report(std::ostream& out, Style style, std::function<void()> onBroken);

    void Add(const Call& call);
    void AddStatus(const std::vector<RegistrationState>& registrations);
    void AddSummary(const std::vector<RegistrationState>& registrations);
    void AddAlive(const AliveObjects& alive);

private:
    void Write(const std::string& lines);

    const Style style_;
    const std::function<void()> onBroken_;
    std::mutex lock_;  // guards the stream
    std::ostream& out_;
};

}  // namespace Host
