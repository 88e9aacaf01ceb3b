#include "Host/Schedules/NextRuns.h"

#include <iostream>

#include "Host/Base/Failure.h"
#include "Host/Base/Json.h"
#include "Host/Schedules/LocalTime.h"
#include "Host/Schedules/ScheduleRefusal.h"
#include "Schedules/Schedule.h"

namespace Host {

using namespace DataCollection::ActionManagement;
using std::chrono::seconds;

namespace {

// Another time has the same local time if it has that by the offset in effect half a day before or after.
bool OccursTwice(const TimePoint& time) {
    constexpr std::chrono::hours near{12};
    const seconds offset = LocalOffset(time);
    for (const TimePoint& other : {time - near, time + near}) {
        const seconds otherOffset = LocalOffset(other);
        if (otherOffset != offset && LocalOffset(time + offset - otherOffset) == otherOffset) return true;
    }
    return false;
}

std::string Remark(const NextRun& run) {
    std::string remark;
    if (run.shift != seconds::zero()) {
        const auto minutes = std::chrono::abs(run.shift) / std::chrono::minutes{1};
        remark = std::string("  local time was set ") + (run.shift > seconds::zero() ? "forward " : "back ") +
                 std::to_string(minutes) + " min before this run";
    }
    return remark + (run.isRepeated ? "  this local time occurs twice" : "");
}

void Print(OutputFormat format, const std::string& schedule, const NextRun& run) {
    const std::string utc = UtcTimeText(run.time), local = IsoTimeText(run.time);
    if (format == OutputFormat::Text) {
        std::cout << "  " << utc << "  " << local << Remark(run) << '\n';
        return;
    }
    std::cout << JsonLine({{"schedule", schedule},
                           {"utc", utc},
                           {"local", local},
                           {"shiftMinutes", run.shift / std::chrono::minutes{1}},
                           {"repeated", run.isRepeated}});
}

}  // namespace

std::vector<NextRun> NextRuns(const TimedActionSettings& schedule, const TimePoint& from, std::uint32_t count) {
    std::vector<NextRun> runs;
    seconds previousOffset = LocalOffset(from);
    TimePoint time = FirstRunOf(schedule, from, LocalBias(from)).time;
    for (; runs.size() < count; time += IntervalOf(schedule)) {
        const seconds offset = LocalOffset(time);
        runs.push_back({.time = time, .shift = offset - previousOffset, .isRepeated = OccursTwice(time)});
        previousOffset = offset;
    }
    return runs;
}

int ShowNextRuns(const NextOptions& options) {
    int code = ExitCode::Success;
    for (const auto& [label, schedule] : options.schedules) {
        if (const auto refusal = RefusalOf(schedule)) {
            std::cerr << label << ": " << *refusal << '\n';
            code = ExitCode::Failure;
            continue;
        }
        if (options.format == OutputFormat::Text) std::cout << label << '\n';
        for (const NextRun& run : NextRuns(schedule, options.from, options.count)) Print(options.format, label, run);
    }
    return code;
}

}  // namespace Host
