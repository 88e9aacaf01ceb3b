// The arithmetic of a schedule: what a record must be like, when its first run is, and whether it is due. It reads no
// clock and logs nothing.
#pragma once

#include "DataCollection/ActionManager.h"
#include "Subsystems/ActionManager/TimePoint.h"

namespace DataCollection::ActionManagement {

inline constexpr std::uint32_t SecondsOfDay = 86400;

// What is wrong with a record, in the order in which it is examined.
enum class ScheduleFault {
    None,
    IntervalPresence,  // not exactly one of the two intervals is set
    IntervalOfDay,     // SpecificTime: the seconds neither divide a day nor are a multiple of it
    StartBeyondDay,    // SpecificTime: the start is no second of the day
    IntervalTooLong,   // 2^32 milliseconds or more
};

[[nodiscard]] ScheduleFault ExamineSchedule(const TimedActionSettings& settings) noexcept;

// For a record without fault.
[[nodiscard]] constexpr std::chrono::milliseconds IntervalOf(const TimedActionSettings& settings) noexcept {
    const std::uint32_t milliseconds = settings.IntervalSeconds * 1000u + settings.IntervalMilliseconds;
    return std::chrono::milliseconds{milliseconds};
}

// Repeat: one interval after the creation.
[[nodiscard]] TimePoint FirstRunOfRepeat(const TimedActionSettings& settings, const TimePoint& creation) noexcept;

// SpecificTime: the start in the creation's UTC day. `bias` is the number of seconds to add to local time to get UTC, 0
// for a record in UTC. A local start that falls before the day is taken a day later, one behind it stays.
[[nodiscard]] TimePoint StartInDayOf(const TimePoint& creation, const TimedActionSettings& settings,
                                     std::int32_t bias) noexcept;
// A start that is past moves to the next day.
[[nodiscard]] TimePoint NextDayIfPast(const TimePoint& start, const TimePoint& creation) noexcept;

// The first run of a record without fault, whatever its type; `bias` counts for a SpecificTime in local time alone.
[[nodiscard]] TimePoint FirstRunOf(const TimedActionSettings& settings, const TimePoint& creation,
                                   std::int32_t bias) noexcept;

// The answer for one moment.
struct ScheduleCheck {
    bool firstRunReached = false;
    TimePoint intervalStart;  // of the interval that the moment lies in, once the first run is reached
    bool due = false;         // reached, and not yet triggered behind the interval's start
};

// Intervals are anchored on the first run; how many of them have passed plays no part.
[[nodiscard]] ScheduleCheck CheckSchedule(const TimePoint& firstRun, std::chrono::milliseconds interval,
                                          const TimePoint& lastTriggered, const TimePoint& now) noexcept;

}  // namespace DataCollection::ActionManagement
