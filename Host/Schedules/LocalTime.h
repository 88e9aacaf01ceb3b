// The wall clock, the process's time zone, and points in time as text.
#pragma once

#include <chrono>
#include <string>

#include "Schedules/TimePoint.h"

namespace Host {

using DataCollection::ActionManagement::TimePoint;

// The system's wall clock.
[[nodiscard]] TimePoint CurrentTime();

// The functions below throw Harbor::Failure for a time that the system's calendar does not reach.

// Returns local time minus UTC at that time.
[[nodiscard]] std::chrono::seconds LocalOffset(const TimePoint& time);
// The same as the schedule's arithmetic takes it: the number of seconds to add to local time to get UTC.
[[nodiscard]] std::int32_t LocalBias(const TimePoint& time);

// "+02:00", rounded to minutes
[[nodiscard]] std::string OffsetText(std::chrono::seconds offset);

// "2024-03-05 07:08:09.012"
[[nodiscard]] std::string LocalTimeText(const TimePoint& time);
// "2024-03-05T07:08:09.012+02:00"
[[nodiscard]] std::string IsoTimeText(const TimePoint& time);
// "2024-03-05T05:08:09.012Z"
[[nodiscard]] std::string UtcTimeText(const TimePoint& time);

}  // namespace Host
