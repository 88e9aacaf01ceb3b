// The command `next`: a schedule told beforehand.
#pragma once

#include <string>

#include "Host/Options.h"

namespace Host {

// A run, and what local time does to it.
struct NextRun {
    DataCollection::ActionManagement::TimePoint time;
    std::chrono::seconds shift{0};  // how far local time jumped since the run before, or since the registration
    bool isRepeated = false;        // this local time comes twice
};

// The first runs of a schedule that is registered at `from`, by the module's own arithmetic and the zone of the
// process. The schedule must be one that the module takes.
[[nodiscard]] std::vector<NextRun> NextRuns(const DataCollection::ActionManagement::TimedActionSettings& schedule,
                                            const DataCollection::ActionManagement::TimePoint& from,
                                            std::uint32_t count);

// Gives the exit code: of a failure if the module would refuse one of the schedules.
int ShowNextRuns(const NextOptions& options);

}  // namespace Host
