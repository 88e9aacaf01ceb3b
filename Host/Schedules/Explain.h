// The command `explain`: describes schedules in words.
#pragma once

#include <vector>

#include "DataCollection/TimedActionSettings.h"
#include "Host/Base/Labelled.h"
#include "Host/Base/OutputFormat.h"
#include "Schedules/TimePoint.h"

namespace Host {

struct ExplainOptions {
    std::vector<Labelled<DataCollection::ActionManagement::TimedActionSettings>> schedules;
    DataCollection::ActionManagement::TimePoint now{};  // the time of registration
    OutputFormat format = OutputFormat::Text;
};

// Prints what each schedule does, or why the module refuses it. Returns the exit code: ExitCode::Failure if the module
// refuses one.
[[nodiscard]] int Explain(const ExplainOptions& options);

}  // namespace Host
