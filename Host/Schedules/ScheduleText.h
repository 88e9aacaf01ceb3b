// Schedules and times as they are written on the command line. A text of another form is thrown as BadForm, which names
// what is wrong: the caller knows the option that the text belongs to. Whether the module accepts a schedule is not
// checked here.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "DataCollection/TimedActionSettings.h"
#include "Schedules/TimePoint.h"

namespace Host {

enum class ClockKind { Utc, Local };

inline constexpr std::string_view MomentForm = "a time from 1970 to 2999 in UTC, such as 2026-03-29T00:30:00Z";

// A duration as the interval.
[[nodiscard]] DataCollection::ActionManagement::TimedActionSettings ParseRepeat(std::string_view text);

// "07:30:00", "07:30:00,12h": a time of day by that clock, and an interval, which is a day if it is not written.
// "+5s,3s": the first full second at least 5 s after `now`, which is in UTC by either clock. It must be less than a day
// away, since a record has only the second of the day.
[[nodiscard]] DataCollection::ActionManagement::TimedActionSettings ParseClockSchedule(
    std::string_view text, ClockKind clock, const DataCollection::ActionManagement::TimePoint& now);

// A text with a colon or a plus sign is a clock schedule, any other one a repeat.
[[nodiscard]] DataCollection::ActionManagement::TimedActionSettings ParseSchedule(
    std::string_view text, ClockKind clock, const DataCollection::ActionManagement::TimePoint& now);

// "2026-03-29T00:30:00Z", from 1970 to 2999. Nothing for a text of another form.
[[nodiscard]] std::optional<DataCollection::ActionManagement::TimePoint> ParseMoment(std::string_view text);

// The start of a clock schedule: "07:30:00".
[[nodiscard]] std::string StartText(const DataCollection::ActionManagement::TimedActionSettings& schedule);

}  // namespace Host
