// Durations, schedules and times as they are written on the command line. A text of another form yields nothing: the
// caller knows the option that it belongs to. Whether the module accepts a schedule is not checked here.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "DataCollection/TimedActionSettings.h"
#include "Schedules/TimePoint.h"

namespace Host {

// The forms, for refusals.
inline constexpr std::string_view DurationForm = "a whole number below 2^32 with ms, s, m, h or d, such as 500ms";
inline constexpr std::string_view ClockScheduleForm =
    "HH:MM:SS or +DURATION, then a comma and the interval unless it is 1d, such as 07:30:00,12h or +5s,3s";
inline constexpr std::string_view ScheduleForm =
    "an interval such as 500ms, or HH:MM:SS or +DURATION with a comma and the interval unless it is 1d, such as "
    "07:30:00,12h";
inline constexpr std::string_view MomentForm = "a time from 1970 to 2999 in UTC, such as 2026-03-29T00:30:00Z";

// "500ms", "2s", "10m", "1h", "1d". The largest is 2^32 - 1 milliseconds, or seconds for the other units.
[[nodiscard]] std::optional<std::chrono::milliseconds> ParseDuration(std::string_view text);

// A duration as the interval. An interval in ms is passed to the module in milliseconds, any other in seconds: the
// module has different rules for them.
[[nodiscard]] std::optional<DataCollection::ActionManagement::TimedActionSettings> ParseRepeat(std::string_view text);

// "07:30:00", "07:30:00,12h"; "+5s,3s" is the first full second at least 5 s after `now`. `bias` is the number of
// seconds to add to local time to get UTC if the schedule is in local time, and nothing if it is in UTC.
[[nodiscard]] std::optional<DataCollection::ActionManagement::TimedActionSettings> ParseClockSchedule(
    std::string_view text, std::optional<std::int32_t> bias, const DataCollection::ActionManagement::TimePoint& now);

// A text with a colon or a plus sign is a clock schedule, any other one a repeat.
[[nodiscard]] std::optional<DataCollection::ActionManagement::TimedActionSettings> ParseSchedule(
    std::string_view text, std::optional<std::int32_t> bias, const DataCollection::ActionManagement::TimePoint& now);

// "2026-03-29T00:30:00Z", from 1970 to 2999.
[[nodiscard]] std::optional<DataCollection::ActionManagement::TimePoint> ParseMoment(std::string_view text);

// The interval, in the unit of the field that it is in: "5400 s", "500 ms".
[[nodiscard]] std::string IntervalText(const DataCollection::ActionManagement::TimedActionSettings& schedule);
// The start of a clock schedule: "07:30:00".
[[nodiscard]] std::string StartText(const DataCollection::ActionManagement::TimedActionSettings& schedule);

}  // namespace Host
