// Moments as people read them: local time, by the zone of the process.
#pragma once

#include <chrono>
#include <string>

#include "Schedules/TimePoint.h"

namespace Host {

using DataCollection::ActionManagement::TimePoint;

// The system's wall clock.
[[nodiscard]] TimePoint CurrentTime();

// Local time minus UTC at that moment.
[[nodiscard]] std::chrono::seconds LocalOffset(const TimePoint& time);

// "2024-03-05 07:08:09.012"
[[nodiscard]] std::string LocalTimeText(const TimePoint& time);
// "2024-03-05T07:08:09.012+02:00"
[[nodiscard]] std::string IsoTimeText(const TimePoint& time);
// "2024-03-05T05:08:09.012Z"
[[nodiscard]] std::string UtcTimeText(const TimePoint& time);

}  // namespace Host
