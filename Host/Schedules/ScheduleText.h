// Durations and schedules as they are written on the command line. Malformed text gives nothing: the
// caller knows the option that it came from. Whether a well-formed schedule is allowed is the module's to say.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

#include "DataCollection/TimedActionSettings.h"
#include "Schedules/TimePoint.h"

namespace Host {

inline constexpr std::string_view DurationForm = "a whole number below 2^32 with ms, s, m, h or d, such as 500ms";
inline constexpr std::string_view ClockScheduleForm =
    "HH:MM:SS or +DURATION, then a comma and the interval unless it is 1d, such as 07:30:00,12h or +5s,3s";
inline constexpr std::string_view ScheduleForm =
    "a repeat such as 500ms, or HH:MM:SS or +DURATION with a comma and the interval unless it is 1d, such as "
    "07:30:00,12h";
inline constexpr std::string_view MomentForm = "a moment from 1970 to 2999 in UTC, such as 2026-03-29T00:30:00Z";

// "500ms", "2s", "10m", "1h", "1d". The largest is 2^32 - 1 milliseconds, or seconds for the other units.
[[nodiscard]] std::optional<std::chrono::milliseconds> ParseDuration(std::string_view text);

// An interval given in ms is passed to the module in milliseconds, others in seconds: it has different rules for them.
[[nodiscard]] std::optional<DataCollection::ActionManagement::TimedActionSettings> ParseRepeat(std::string_view text);

// "07:30:00", "07:30:00,12h"; "+5s,3s" is the first full second at least 5 s after `now`. `bias` is the number of
// seconds to add to local time to get UTC, if the schedule is in local time.
[[nodiscard]] std::optional<DataCollection::ActionManagement::TimedActionSettings> ParseClockSchedule(
    std::string_view text, std::optional<std::int32_t> bias, const DataCollection::ActionManagement::TimePoint& now);

// Either of them: a text with a colon or a plus is a clock schedule, any other one a repeat.
[[nodiscard]] std::optional<DataCollection::ActionManagement::TimedActionSettings> ParseSchedule(
    std::string_view text, std::optional<std::int32_t> bias, const DataCollection::ActionManagement::TimePoint& now);

// "2026-03-29T00:30:00Z", in UTC, from 1970 to 2999.
[[nodiscard]] std::optional<DataCollection::ActionManagement::TimePoint> ParseMoment(std::string_view text);

[[nodiscard]] std::optional<std::uint32_t> ParseNumber32(std::string_view text);

}  // namespace Host
