// The module to run, its registrations, and the commands.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "DataCollection/ActionManager.h"
#include "Host/Base/Labelled.h"
#include "Host/Base/OutputFormat.h"
#include "Host/Run/Commands.h"

namespace Host {

struct RunOptions {
    std::string modulePath;
    std::chrono::milliseconds polling{};
    std::vector<Labelled<DataCollection::ActionManagement::TimedActionSettings>> schedules{};
    std::vector<Labelled<DataCollection::ActionManagement::ForcedActionConfig>> watches{};
    std::vector<TimedCommand> commands{};
    std::optional<std::chrono::milliseconds> duration{};  // no value: the host runs until it is stopped
    OutputFormat format = OutputFormat::Text;
};

}  // namespace Host
