// The command `explain`: a schedule in words.
#pragma once

#include <string>

#include "Host/Options.h"

namespace Host {

// Why the module would refuse the schedule; empty if it takes it.
[[nodiscard]] std::string RefusalOf(const DataCollection::ActionManagement::TimedActionSettings& schedule);

// Gives the exit code: of a failure if the module would refuse one of the schedules.
int Explain(const ExplainOptions& options);

}  // namespace Host
