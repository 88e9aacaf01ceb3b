// The command `next`: previews schedules.
#pragma once

#include <vector>

#include "DataCollection/TimedActionSettings.h"
#include "Host/Base/Labelled.h"
#include "Host/Base/OutputFormat.h"
#include "Schedules/TimePoint.h"

namespace Host {

struct NextOptions {
    std::vector<Labelled<DataCollection::ActionManagement::TimedActionSettings>> schedules{};
    std::uint32_t count = 5;                             // of runs to list for each
    DataCollection::ActionManagement::TimePoint from{};  // the time of registration
    OutputFormat format = OutputFormat::Text;
};

// A run, and what is special about its local time.
struct NextRun {
    DataCollection::ActionManagement::TimePoint time;
    std::chrono::seconds shift{0};  // change of the local offset since the previous run, or the registration
    bool isRepeated = false;        // this local time occurs twice
};

// Returns the first `count` runs of a schedule that is registered at `from`, by the module's own arithmetic and the
// process's time zone. The module must accept the schedule.
[[nodiscard]] std::vector<NextRun> NextRuns(const DataCollection::ActionManagement::TimedActionSettings& schedule,
                                            const DataCollection::ActionManagement::TimePoint& from,
                                            std::uint32_t count);

// Prints the runs of each schedule, or why the module refuses it. Returns the exit code: ExitCode::Failure if the
// module refuses one.
[[nodiscard]] int ShowNextRuns(const NextOptions& options);

}  // namespace Host
