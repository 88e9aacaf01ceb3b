// Why the module refuses a schedule.
#pragma once

#include <optional>
#include <string>

#include "DataCollection/TimedActionSettings.h"

namespace Host {

// A text such as "refused: the interval is 0; the shortest is 1ms". Nothing if the module accepts the schedule.
[[nodiscard]] std::optional<std::string> RefusalOf(
    const DataCollection::ActionManagement::TimedActionSettings& schedule);

}  // namespace Host
