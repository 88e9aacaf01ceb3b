#include "Platform/Time.h"

#include <gtest/gtest.h>
#include <time.h>

#include <chrono>
#include <optional>

#include "Platform/Errors.h"
#include "Support/ScopedVariable.h"

using namespace Platform;

namespace {

using namespace std::chrono;

constexpr std::int64_t UnixEpoch = 11'644'473'600;
constexpr std::int64_t TicksPerSecond = 10'000'000;
constexpr std::int64_t SecondsPerDay = 86400;

constexpr const char* Berlin = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* LordHowe = "LHST-10:30LHDT-11,M10.1.0,M4.1.0";
constexpr const char* Dublin = "IST-1GMT0,M10.5.0,M3.5.0/1";  // winter is marked as daylight saving time
constexpr const char* NewYork = "EST5EDT,M3.2.0,M11.1.0";

FILETIME FromTicks(std::int64_t ticks) {
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

std::int64_t ToTicks(const FILETIME& time) {
    return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

FILETIME FromUnix(std::int64_t unixTime) {
    return FromTicks((unixTime + UnixEpoch) * TicksPerSecond);
}

constexpr std::int64_t UnixOf(year_month_day date, std::int64_t secondOfDay = 0) {
    return sys_days{date}.time_since_epoch().count() * SecondsPerDay + secondOfDay;
}

struct Zone : ScopedVariable {
    explicit Zone(const char* text) : ScopedVariable("TZ", text) { tzset(); }
};

std::int64_t LocalOffset(std::int64_t unixTime) {
    tm local{};
    localtime_r(&unixTime, &local);
    return local.tm_gmtoff;
}

std::int64_t ConvertedOffset(std::int64_t unixTime) {
    const FILETIME utc = FromUnix(unixTime);
    FILETIME local{};
    EXPECT_TRUE(FileTimeToLocalFileTime(&utc, &local));
    return (ToTicks(local) - ToTicks(utc)) / TicksPerSecond;
}

std::optional<std::int64_t> presentTime;
DWORD tickCount = 1'000'000;

}  // namespace

// These replace the functions of the library.
DWORD Platform::GetTickCount() noexcept {
    return tickCount;
}

void Platform::GetSystemTimeAsFileTime(FILETIME* time) noexcept {
    presentTime ? void(*time = FromUnix(*presentTime)) : GetSystemTimePreciseAsFileTime(time);
}

TEST(Calendar, AgreesWithTheStandardLibraryOverItsWholeRange) {
    constexpr sys_days First = 1601y / January / 1;
    constexpr sys_days Last = year{30827} / December / 31;
    constexpr days Stride{13};
    for (sys_days date = First; date <= Last; date = date < Last ? std::min(date + Stride, Last) : date + Stride) {
        const std::int64_t ticks = (date - First).count() * SecondsPerDay * TicksPerSecond + 863'999'990'000;
        const FILETIME time = FromTicks(ticks);
        SYSTEMTIME fields{};
        ASSERT_TRUE(FileTimeToSystemTime(&time, &fields));
        ASSERT_EQ((year{fields.wYear} / fields.wMonth / fields.wDay), year_month_day{date});
        ASSERT_EQ(weekday{fields.wDayOfWeek}, weekday{date});
        ASSERT_EQ(hours{fields.wHour} + minutes{fields.wMinute} + seconds{fields.wSecond}, 23h + 59min + 59s);
        ASSERT_EQ(fields.wMilliseconds, 999);
        FILETIME back{};
        ASSERT_TRUE(SystemTimeToFileTime(&fields, &back));
        ASSERT_EQ(ToTicks(back), ticks);
    }
}

TEST(LocalTime, FollowsDaylightSavingAndAChangeOfZone) {
    for (const auto& day : {2024y / March / 31, 2024y / October / 27, 2024y / April / 6, 2024y / October / 5,
                            2024y / March / 10, 1965y / July / 1}) {
        for (std::int64_t second = 0; second < SecondsPerDay; second += 449) {
            for (const char* const zone : {Berlin, LordHowe, Dublin, NewYork, "UTC0", "NPT-5:45", "XXX12:34:56"}) {
                const Zone scope{zone};
                const std::int64_t time = UnixOf(day, second);
                ASSERT_EQ(ConvertedOffset(time), LocalOffset(time)) << zone << ' ' << time;
                ASSERT_EQ(ConvertedOffset(time), LocalOffset(time)) << zone << ' ' << time << ", second call";
            }
        }
    }
}

TEST(LocalTime, LooksAtTheZoneAgainAfterFiveSeconds) {
    testing::internal::CaptureStderr();
    for (const auto& [name, hours] :
         {std::pair{"AAA-1", 1}, {"BBB-2", 2}, {"Nowhere/City", 0}, {"CCC", 0}, {"<+03>-3", 3}}) {
        const ScopedVariable zone{"TZ", name};
        tickCount += 5000;
        EXPECT_EQ(ConvertedOffset(0), hours * 3600);
        tickCount += 4999;
        const ScopedVariable later{"TZ", "DDD-9"};
        EXPECT_EQ(ConvertedOffset(0), hours * 3600);
        tickCount += 5000;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "TZ: there is no time zone 'Nowhere/City', UTC is used\nTZ: there is no time zone 'CCC', UTC is used\n");
}

TEST(TimeZone, ReturnsTheCurrentBiasAndItsKind) {
    struct Case {
        const char* name;
        std::int64_t now;
        DWORD kind;
        LONG bias;
    };
    constexpr std::int64_t Winter = UnixOf(2024y / January / 15), Summer = UnixOf(2024y / July / 15);
    constexpr std::int64_t Change = UnixOf(2024y / March / 31, 3600);
    for (const auto& [name, now, kind, bias] :
         {Case{"UTC0", Winter, TIME_ZONE_ID_UNKNOWN, 0}, Case{"NPT-5:45", Summer, TIME_ZONE_ID_UNKNOWN, -345},
          Case{Berlin, Change - 1, TIME_ZONE_ID_STANDARD, -60}, Case{Berlin, Change, TIME_ZONE_ID_DAYLIGHT, -120},
          Case{NewYork, Winter, TIME_ZONE_ID_STANDARD, 300}, Case{NewYork, Summer, TIME_ZONE_ID_DAYLIGHT, 240},
          Case{LordHowe, Winter, TIME_ZONE_ID_DAYLIGHT, -660}, Case{LordHowe, Summer, TIME_ZONE_ID_STANDARD, -630},
          Case{Dublin, Winter, TIME_ZONE_ID_DAYLIGHT, 0}, Case{Dublin, Summer, TIME_ZONE_ID_STANDARD, -60}}) {
        SCOPED_TRACE(testing::Message() << name << " at " << now);
        const ScopedVariable zone{"TZ", name};
        presentTime = now;
        DYNAMIC_TIME_ZONE_INFORMATION information{};
        const DWORD answer = GetDynamicTimeZoneInformation(&information);
        presentTime.reset();
        ASSERT_EQ(answer, kind);
        const LONG more[] = {0, information.StandardBias, information.DaylightBias};
        EXPECT_EQ(information.Bias + more[answer], bias);
    }
}
