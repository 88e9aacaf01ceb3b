// Points in time and durations in ticks of 100 ns, and their conversion to the file times of the platform layer.
#pragma once

#include <chrono>

#include "Harbor/Types.h"
#include "Platform/Time.h"

namespace DataCollection::ActionManagement {

using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
using TimePoint = std::chrono::sys_time<Ticks>;  // UTC, since 1970-01-01 00:00:00

// From 1601-01-01, where file times begin, to 1970-01-01.
inline constexpr Ticks FileTimeEpoch = std::chrono::seconds{11644473600};

[[nodiscard]] TimePoint FromFileTime(const Platform::FILETIME& fileTime) noexcept;
// The sum wraps at 64 bits, so that a time before 1601 becomes one that no calendar function accepts.
[[nodiscard]] Platform::FILETIME ToFileTime(const TimePoint& time) noexcept;

// 00:00:00 UTC of the day of `time`.
[[nodiscard]] TimePoint UtcDayStart(const TimePoint& time) noexcept;

// "2024-03-05 07:08:09.012" in UTC. A time before 1601 is shown as 1601-01-01.
[[nodiscard]] Harbor::WideString FormatTimePoint(const TimePoint& time);

}  // namespace DataCollection::ActionManagement
