#include "Host/Schedules/ScheduleText.h"

#include <chrono>
#include <cstdio>

#include "Host/Base/Failure.h"
#include "Host/Base/Number.h"
#include "Host/Schedules/Duration.h"
#include "Schedules/Schedule.h"

namespace Host {

using namespace DataCollection::ActionManagement;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

constexpr char ClockTimeForm[] = "a time of day is HH:MM:SS, such as 07:30:00";
// A start in the same second of the next day would be in the past, or now.
constexpr seconds LongestDelay{SecondsPerDay - 1};

std::optional<std::uint32_t> ParseTwoDigits(std::string_view text, std::uint32_t limit) {
    const auto number = ParseNumber<std::uint32_t>(text);
    return text.size() == 2 && number && *number < limit ? number : std::nullopt;
}

std::optional<std::uint32_t> ParseClockTime(std::string_view text) {
    if (text.size() != 8 || text[2] != ':' || text[5] != ':') return std::nullopt;
    const auto hour = ParseTwoDigits(text.substr(0, 2), 24);
    const auto minute = ParseTwoDigits(text.substr(3, 2), 60);
    const auto second = ParseTwoDigits(text.substr(6, 2), 60);
    if (!hour || !minute || !second) return std::nullopt;
    return *hour * 3600 + *minute * 60 + *second;
}

[[noreturn]] void RefuseClockTime(std::string_view text) {
    if (text == "24:00:00") throw BadForm("hours are from 00 to 23; midnight is 00:00:00");
    if (const std::string padded = "0" + std::string(text); ParseClockTime(padded)) {
        throw BadForm("each number has two digits; write " + padded);
    }
    const bool isClockTime = text.size() == 8 && text.find_first_not_of("0123456789:") == text.npos;
    throw BadForm(isClockTime ? "hours are from 00 to 23, minutes and seconds from 00 to 59" : ClockTimeForm);
}

std::uint32_t ParseStart(std::string_view text) {
    const auto start = ParseClockTime(text);
    if (!start) RefuseClockTime(text);
    return *start;
}

std::uint32_t ParseDelayedStart(std::string_view text, const TimePoint& now) {
    const milliseconds delay = ParseDuration(text).Length();
    if (delay > LongestDelay) {
        throw BadForm("a start is at most " + DurationText(LongestDelay) +
                      " away, since a schedule has only the time of day; use a time such as 07:30:00");
    }
    const auto second = std::chrono::ceil<seconds>(now + delay).time_since_epoch() % std::chrono::days{1};
    return static_cast<std::uint32_t>(second.count());
}

}  // namespace

TimedActionSettings ParseRepeat(std::string_view text) {
    const Duration interval = ParseDuration(text);
    return {.StartSeconds = 0,
            .IsLocalTime = false,
            .IntervalSeconds = interval.seconds,
            .Type = TimedActionType::Repeat,
            .IntervalMilliseconds = interval.milliseconds};
}

TimedActionSettings ParseClockSchedule(std::string_view text, ClockKind clock, const TimePoint& now) {
    const std::size_t comma = text.find(',');
    const std::string_view startText = text.substr(0, comma);
    const bool isDelay = startText.starts_with('+');
    const std::uint32_t start = isDelay ? ParseDelayedStart(startText.substr(1), now) : ParseStart(startText);
    const Duration interval = comma == text.npos ? Duration{SecondsPerDay, 0} : ParseDuration(text.substr(comma + 1));
    return {.StartSeconds = start,
            .IsLocalTime = clock == ClockKind::Local && !isDelay,
            .IntervalSeconds = interval.seconds,
            .Type = TimedActionType::SpecificTime,
            .IntervalMilliseconds = interval.milliseconds};
}

TimedActionSettings ParseSchedule(std::string_view text, ClockKind clock, const TimePoint& now) {
    return text.find_first_of(":+") == text.npos ? ParseRepeat(text) : ParseClockSchedule(text, clock, now);
}

std::optional<TimePoint> ParseMoment(std::string_view text) {
    constexpr std::size_t dayLength = 10;
    if (text.size() != 20 || text[4] != '-' || text[7] != '-' || text[dayLength] != 'T' || !text.ends_with('Z')) {
        return std::nullopt;
    }
    const auto year = ParseNumber<std::uint32_t>(text.substr(0, 4));
    const auto month = ParseTwoDigits(text.substr(5, 2), 13);
    const auto day = ParseTwoDigits(text.substr(8, 2), 32);
    const auto second = ParseClockTime(text.substr(dayLength + 1, 8));
    if (!year || *year < 1970 || *year > 2999 || !month || !day || !second) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(*year)), std::chrono::month{*month},
                                           std::chrono::day{*day}};
    if (!date.ok()) return std::nullopt;
    return std::chrono::sys_days{date} + seconds{*second};
}

std::string StartText(const TimedActionSettings& schedule) {
    const std::uint32_t second = schedule.StartSeconds;
    char text[9];
    std::snprintf(text, sizeof(text), "%02u:%02u:%02u", second / 3600 % 24, second / 60 % 60, second % 60);
    return text;
}

}  // namespace Host
