// The command `check`: shows what a configuration would register, without loading the module.
#pragma once

#include <string>

#include "Host/Run/RunOptions.h"
#include "Host/Schedules/LocalTime.h"

namespace Host {

struct CheckOptions {
    std::string file;
    RunOptions run;
    TimePoint now{};  // the time of registration
};

// Prints each registration with its first run. Returns the exit code.
[[nodiscard]] int Check(const CheckOptions& options);

// Says on standard error which settings of a run the user may not have meant.
void WarnOfPolling(const RunOptions& options);

}  // namespace Host
