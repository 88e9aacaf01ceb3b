// The arithmetic of a schedule: which records are valid, when the first run is, and whether a run is due. It reads no
// clock and writes no log; all functions may be called on any thread.
#pragma once

#include "DataCollection/TimedActionSettings.h"
#include "Schedules/TimePoint.h"

namespace DataCollection::ActionManagement {

inline constexpr std::uint32_t SecondsPerDay = 86400;

// What is wrong with a record, in the order in which it is checked.
enum class ScheduleFault {
    None,
    IntervalPresence,  // not exactly one of the two intervals is set
    IntervalOfDay,     // SpecificTime: the seconds neither divide a day nor are a multiple of it
    StartBeyondDay,    // SpecificTime: the start is not a second of the day
    IntervalTooLong,   // 2^32 milliseconds or more
};

[[nodiscard]] ScheduleFault CheckSettings(const TimedActionSettings& settings) noexcept;

// The interval of a valid record.
[[nodiscard]] constexpr std::chrono::milliseconds IntervalOf(const TimedActionSettings& settings) noexcept {
    const std::uint32_t milliseconds = settings.IntervalSeconds * 1000u + settings.IntervalMilliseconds;
    return std::chrono::milliseconds{milliseconds};
}

struct FirstRun {
    TimePoint time;
    bool isNextDay = false;  // SpecificTime: the start in the UTC day of the creation had passed
};

// The first run of a valid record that is registered at `creation`.
//   Repeat: one interval after the creation.
//   SpecificTime: the start second in the UTC day of the creation, or 24 hours later if that has passed. `bias` is the
//   number of seconds to add to local time to get UTC; it is used only if the record is in local time. A local start
//   that falls before the UTC day is moved a day later, one that falls after it stays there.
[[nodiscard]] FirstRun FirstRunOf(const TimedActionSettings& settings, const TimePoint& creation,
                                  std::int32_t bias) noexcept;

// The state of a schedule at one moment.
struct ScheduleCheck {
    bool firstRunReached = false;
    TimePoint intervalStart;  // of the interval that the moment is in; set only if the first run is reached
    bool due = false;         // the first run is reached, and nothing was triggered after the start of the interval
};

// Intervals are counted from the first run. How many of them have passed since the last triggering does not matter.
[[nodiscard]] ScheduleCheck CheckSchedule(const TimePoint& firstRun, std::chrono::milliseconds interval,
                                          const TimePoint& lastTriggered, const TimePoint& now) noexcept;

// The first moment at which CheckSchedule answers due, in a cycle at that moment or later, as long as nothing is
// triggered: the first run, or the start of the first interval that does not begin before the last triggering.
[[nodiscard]] TimePoint DueFrom(const TimePoint& firstRun, std::chrono::milliseconds interval,
                                const TimePoint& lastTriggered) noexcept;

}  // namespace DataCollection::ActionManagement
