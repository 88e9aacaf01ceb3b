// Moments and spans of time in ticks of 100 ns.
#pragma once

#include <chrono>

#include "Harbor/Types.h"

namespace DataCollection::ActionManagement {

using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
using TimePoint = std::chrono::sys_time<Ticks>;  // UTC, since 1970-01-01 00:00:00

// The system's wall clock.
[[nodiscard]] TimePoint CurrentTime() noexcept;

// 00:00:00 UTC of that day.
[[nodiscard]] TimePoint UtcDayStart(const TimePoint& time) noexcept;

// "2024-03-05 07:08:09.012" in UTC. Times before 1601 show as its beginning.
[[nodiscard]] Harbor::WideString FormatTimePoint(const TimePoint& time);

}  // namespace DataCollection::ActionManagement
