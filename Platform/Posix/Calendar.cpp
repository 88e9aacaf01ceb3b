#include "ErrnoFailure.h"
#include "FileTimes.h"

namespace Platform {

using namespace Posix;

// Years begin in March, so that the leap day is the last day of its year. They are grouped in eras of 400 years, which
// all have the same number of days.
namespace {

constexpr std::int64_t FirstYear = 1601;
constexpr std::int64_t LastYear = 30827;
constexpr std::int64_t DaysPerYear = 365;
constexpr std::int64_t YearsPerEra = 400;
constexpr std::int64_t DaysPerEra = 146097;
constexpr std::int64_t MarchBasedDays1601 = 584694;  // from year 0, March 1 to 1601-01-01
constexpr std::int64_t MondayBasedShift = 1;         // 1601-01-01 was a Monday, and Sunday is 0

constexpr std::int64_t DaysBeforeMonth(std::int64_t monthFromMarch) noexcept {
    return (153 * monthFromMarch + 2) / 5;
}

constexpr std::int64_t DaysSince1601(std::int64_t year, std::int64_t month, std::int64_t day) noexcept {
    const std::int64_t marchYear = year - (month <= 2 ? 1 : 0);
    const std::int64_t monthFromMarch = (month + 9) % 12;
    const std::int64_t leapDays = marchYear / 4 - marchYear / 100 + marchYear / 400;
    return marchYear * DaysPerYear + leapDays + DaysBeforeMonth(monthFromMarch) + day - 1 - MarchBasedDays1601;
}
static_assert(DaysSince1601(1601, 1, 1) == 0);
static_assert(DaysSince1601(1970, 1, 1) == UnixEpochSeconds / SecondsPerDay);

constexpr std::int64_t EndOfCalendar = DaysSince1601(LastYear + 1, 1, 1) * SecondsPerDay * TicksPerSecond;

struct Date {
    std::int64_t year, month, day;
};

constexpr Date DateOf(std::int64_t daysSince1601) noexcept {
    const std::int64_t days = daysSince1601 + MarchBasedDays1601;
    const std::int64_t dayOfEra = days % DaysPerEra;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / DaysPerYear;
    const std::int64_t dayOfYear = dayOfEra - (DaysPerYear * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int64_t month = (monthFromMarch + 2) % 12 + 1;
    return {days / DaysPerEra * YearsPerEra + yearOfEra + (month <= 2 ? 1 : 0), month,
            dayOfYear - DaysBeforeMonth(monthFromMarch) + 1};
}

bool IsLeapYear(int year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysOfMonth(int year, int month) noexcept {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return days[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

bool IsValid(const SYSTEMTIME& fields) noexcept {
    return fields.wYear >= FirstYear && fields.wYear <= LastYear && fields.wMonth >= 1 && fields.wMonth <= 12 &&
           fields.wDay >= 1 && fields.wDay <= DaysOfMonth(fields.wYear, fields.wMonth) && fields.wHour < 24 &&
           fields.wMinute < 60 && fields.wSecond < 60 && fields.wMilliseconds < 1000;
}

}  // namespace

BOOL FileTimeToSystemTime(const FILETIME* time, SYSTEMTIME* fields) noexcept {
    if (time == nullptr || fields == nullptr) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    const std::int64_t ticks = TicksOf(*time);
    if (ticks < 0 || ticks >= EndOfCalendar) return Fail(ERROR_INVALID_PARAMETER, FALSE);

    const std::int64_t seconds = ticks / TicksPerSecond;
    const std::int64_t days = seconds / SecondsPerDay;
    const std::int64_t secondOfDay = seconds % SecondsPerDay;
    const Date date = DateOf(days);
    const auto field = [](std::int64_t value) { return static_cast<std::uint16_t>(value); };
    fields->wYear = field(date.year);
    fields->wMonth = field(date.month);
    fields->wDayOfWeek = field((days + MondayBasedShift) % 7);
    fields->wDay = field(date.day);
    fields->wHour = field(secondOfDay / SecondsPerHour);
    fields->wMinute = field(secondOfDay % SecondsPerHour / SecondsPerMinute);
    fields->wSecond = field(secondOfDay % SecondsPerMinute);
    fields->wMilliseconds = field(ticks % TicksPerSecond / TicksPerMillisecond);
    return TRUE;
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* fields, FILETIME* time) noexcept {
    if (fields == nullptr || time == nullptr || !IsValid(*fields)) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    const std::int64_t seconds = DaysSince1601(fields->wYear, fields->wMonth, fields->wDay) * SecondsPerDay +
                                 fields->wHour * SecondsPerHour + fields->wMinute * SecondsPerMinute + fields->wSecond;
    *time = FileTimeOf(seconds * TicksPerSecond + fields->wMilliseconds * TicksPerMillisecond);
    return TRUE;
}

}  // namespace Platform
