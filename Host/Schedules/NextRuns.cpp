#include "Host/Schedules/NextRuns.h"

#include <iostream>
#include <nlohmann/json.hpp>

#include "Host/Base/Failure.h"
#include "Host/Schedules/LocalTime.h"
#include "Host/Schedules/ScheduleRefusal.h"
#include "Schedules/Schedule.h"

namespace Host {

using namespace DataCollection::ActionManagement;
using std::chrono::seconds;

namespace {

// Another moment has the same local time if it has it by the offset that holds half a day before or after.
bool ComesTwice(const TimePoint& time) {
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
        remark = std::string("  local time jumped ") + (run.shift > seconds::zero() ? "ahead " : "back ") +
                 std::to_string(minutes) + " min before";
    }
    return remark + (run.isRepeated ? "  this local time comes twice" : "");
}

void Print(OutputFormat format, const std::string& schedule, const NextRun& run) {
    const std::string utc = UtcTimeText(run.time), local = IsoTimeText(run.time);
    if (format == OutputFormat::Text) {
        std::cout << "  " << utc << "  " << local << Remark(run) << '\n';
        return;
    }
    const nlohmann::ordered_json line{{"schedule", schedule},
                                      {"utc", utc},
                                      {"local", local},
                                      {"shiftMinutes", run.shift / std::chrono::minutes{1}},
                                      {"repeated", run.isRepeated}};
    std::cout << line.dump() << '\n';
}

}  // namespace

std::vector<NextRun> NextRuns(const TimedActionSettings& schedule, const TimePoint& from, std::uint32_t count) {
    const seconds offset = LocalOffset(from);
    const auto bias = static_cast<std::int32_t>(-offset.count());
    std::vector<NextRun> runs;
    seconds before = offset;
    for (TimePoint time = FirstRunOf(schedule, from, bias).time; runs.size() < count; time += IntervalOf(schedule)) {
        const seconds now = LocalOffset(time);
        runs.push_back({time, now - before, ComesTwice(time)});
        before = now;
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
    std::cout.flush();
    return std::cout ? code : ExitCode::Failure;
}

}  // namespace Host
