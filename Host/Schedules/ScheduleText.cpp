#include "Host/Schedules/ScheduleText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

#include "Host/Base/Number.h"
#include "Schedules/Schedule.h"

namespace Host {

using namespace DataCollection::ActionManagement;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

struct Unit {
    std::string_view name;
    std::uint32_t secondsEach;  // 0: milliseconds
};
constexpr std::array Units{Unit{"ms", 0}, Unit{"s", 1}, Unit{"m", 60}, Unit{"h", 3600}, Unit{"d", SecondsPerDay}};

// A schedule has a field for each unit; one of them is used.
struct Interval {
    std::uint32_t seconds = 0;
    std::uint32_t milliseconds = 0;
};

std::optional<Interval> ParseInterval(std::string_view text) {
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const auto number = ParseNumber<std::uint32_t>(text.substr(0, digits));
    const auto unit = std::ranges::find(Units, text.substr(digits), &Unit::name);
    if (!number || unit == Units.end()) return std::nullopt;
    if (unit->secondsEach == 0) return Interval{0, *number};
    const std::uint64_t count = std::uint64_t{*number} * unit->secondsEach;
    if (count > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    return Interval{static_cast<std::uint32_t>(count), 0};
}

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

std::uint32_t SecondOfDay(const TimePoint& time) {
    const auto second = std::chrono::ceil<seconds>(time).time_since_epoch() % std::chrono::days{1};
    return static_cast<std::uint32_t>(second.count());
}

std::optional<std::uint32_t> ParseStart(std::string_view text, std::int32_t bias, const TimePoint& now) {
    if (!text.starts_with('+')) return ParseClockTime(text);
    const auto delay = ParseDuration(text.substr(1));
    if (!delay) return std::nullopt;
    return SecondOfDay(now + *delay - seconds{bias});
}

}  // namespace

std::optional<milliseconds> ParseDuration(std::string_view text) {
    const auto interval = ParseInterval(text);
    if (!interval) return std::nullopt;
    return seconds{interval->seconds} + milliseconds{interval->milliseconds};
}

std::optional<TimedActionSettings> ParseRepeat(std::string_view text) {
    const auto interval = ParseInterval(text);
    if (!interval) return std::nullopt;
    return TimedActionSettings{.StartSeconds = 0,
                               .IsLocalTime = false,
                               .IntervalSeconds = interval->seconds,
                               .Type = TimedActionType::Repeat,
                               .IntervalMilliseconds = interval->milliseconds};
}

std::optional<TimedActionSettings> ParseClockSchedule(std::string_view text, std::optional<std::int32_t> bias,
                                                      const TimePoint& now) {
    const std::size_t comma = text.find(',');
    const auto start = ParseStart(text.substr(0, comma), bias.value_or(0), now);
    const auto interval = comma == text.npos ? Interval{SecondsPerDay, 0} : ParseInterval(text.substr(comma + 1));
    if (!start || !interval) return std::nullopt;
    return TimedActionSettings{.StartSeconds = *start,
                               .IsLocalTime = bias.has_value(),
                               .IntervalSeconds = interval->seconds,
                               .Type = TimedActionType::SpecificTime,
                               .IntervalMilliseconds = interval->milliseconds};
}

std::optional<TimedActionSettings> ParseSchedule(std::string_view text, std::optional<std::int32_t> bias,
                                                 const TimePoint& now) {
    return text.find_first_of(":+") == text.npos ? ParseRepeat(text) : ParseClockSchedule(text, bias, now);
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

std::string IntervalText(const TimedActionSettings& schedule) {
    return schedule.IntervalSeconds != 0 ? std::to_string(schedule.IntervalSeconds) + " s"
                                         : std::to_string(schedule.IntervalMilliseconds) + " ms";
}

std::string StartText(const TimedActionSettings& schedule) {
    const std::uint32_t second = schedule.StartSeconds;
    char text[9];
    std::snprintf(text, sizeof(text), "%02u:%02u:%02u", second / 3600 % 24, second / 60 % 60, second % 60);
    return text;
}

}  // namespace Host
