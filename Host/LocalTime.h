// Moments as people read them: local time, by the zone of the process.
#pragma once

#include <string>

#include "Subsystems/ActionManager/TimePoint.h"

namespace Host {

using DataCollection::ActionManagement::TimePoint;

// "2024-03-05 07:08:09.012"
[[nodiscard]] std::string LocalTimeText(const TimePoint& time);
// "2024-03-05T07:08:09.012+02:00"
[[nodiscard]] std::string IsoTimeText(const TimePoint& time);

}  // namespace Host
