// Clocks, calendar and time zone.
#pragma once

#include "Platform/Types.h"

namespace Platform {

// The number of 100 ns units since 1601-01-01 00:00:00, in two halves.
struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

struct SYSTEMTIME {
    std::uint16_t wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};

// The biases of a time zone, in minutes. UTC is local time plus the bias, so a bias is negative east of Greenwich. On
// POSIX the names of the zone and the dates of its changes are 0: no caller reads them.
struct DYNAMIC_TIME_ZONE_INFORMATION {
    LONG Bias = 0;
    WideChar StandardName[32] = {};
    SYSTEMTIME StandardDate = {};
    LONG StandardBias = 0;
    WideChar DaylightName[32] = {};
    SYSTEMTIME DaylightDate = {};
    LONG DaylightBias = 0;
    WideChar TimeZoneKeyName[128] = {};
    std::uint8_t DynamicDaylightTimeDisabled = 0;
};
static_assert(sizeof(DYNAMIC_TIME_ZONE_INFORMATION) == 432);

inline constexpr DWORD TIME_ZONE_ID_UNKNOWN = 0;   // the zone has no daylight saving: only Bias applies
inline constexpr DWORD TIME_ZONE_ID_STANDARD = 1;  // Bias + StandardBias applies
inline constexpr DWORD TIME_ZONE_ID_DAYLIGHT = 2;  // Bias + DaylightBias applies
inline constexpr DWORD TIME_ZONE_ID_INVALID = 0xFFFFFFFF;

// Returns the milliseconds of a monotonic clock of coarse resolution (up to 16 ms). The count wraps at 32 bits. A call
// takes a few nanoseconds, allocates nothing and takes no lock.
PLATFORM_API DWORD GetTickCount() noexcept;

// Read the wall clock in UTC. The precise form has the finest resolution that the system offers.
PLATFORM_API void GetSystemTimeAsFileTime(FILETIME* time) noexcept;
PLATFORM_API void GetSystemTimePreciseAsFileTime(FILETIME* time) noexcept;

// Converts UTC to local time with the offset that the zone of the process has at `*utc`. A changed zone applies after
// five seconds at most. On POSIX a zone that TZ names but the system does not know is reported once on the debugger's
// output; it means UTC. Fails with ERROR_INVALID_PARAMETER if a pointer is null or a time is out of range.
PLATFORM_API BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local) noexcept;

// Convert between a time and its calendar fields, for the years 1601 to 30827. No time zone is applied. Fail with
// ERROR_INVALID_PARAMETER if a pointer is null or a value is out of range.
PLATFORM_API BOOL FileTimeToSystemTime(const FILETIME* time, SYSTEMTIME* fields) noexcept;
PLATFORM_API BOOL SystemTimeToFileTime(const SYSTEMTIME* fields, FILETIME* time) noexcept;

// Stores the biases of the zone of the process and returns which of them applies now: one of the TIME_ZONE_ID values.
PLATFORM_API DWORD GetDynamicTimeZoneInformation(DYNAMIC_TIME_ZONE_INFORMATION* zone) noexcept;

// Read a monotonic counter of high resolution and the number of its ticks per second.
PLATFORM_API BOOL QueryPerformanceCounter(std::int64_t* counter) noexcept;
PLATFORM_API BOOL QueryPerformanceFrequency(std::int64_t* frequency) noexcept;

}  // namespace Platform
