// Clocks, calendar and time zone.
#pragma once

#include "Platform/Types.h"

namespace Platform {

// 100 ns units since 1601-01-01 00:00:00, in two halves.
struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

struct SYSTEMTIME {
    std::uint16_t wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};

// Biases are minutes to add to local time to get UTC: negative east of Greenwich. The names of the zone and the dates
// of the changes, which nobody here reads, are left out.
struct DYNAMIC_TIME_ZONE_INFORMATION {
    LONG Bias;
    LONG StandardBias;
    LONG DaylightBias;
};

inline constexpr DWORD TIME_ZONE_ID_UNKNOWN = 0;   // the zone has no daylight saving: Bias alone counts
inline constexpr DWORD TIME_ZONE_ID_STANDARD = 1;  // Bias + StandardBias is in force
inline constexpr DWORD TIME_ZONE_ID_DAYLIGHT = 2;  // Bias + DaylightBias is in force
inline constexpr DWORD TIME_ZONE_ID_INVALID = 0xFFFFFFFF;

// Milliseconds of a monotonic clock of coarse resolution (up to 16 ms), wrapping at 32 bits. It costs a few
// nanoseconds, allocates nothing and takes no lock.
PLATFORM_EXPORT DWORD GetTickCount() noexcept;

// The wall clock in UTC; the precise form reads the finest clock there is.
PLATFORM_EXPORT void GetSystemTimeAsFileTime(FILETIME* time) noexcept;
PLATFORM_EXPORT void GetSystemTimePreciseAsFileTime(FILETIME* time) noexcept;

// UTC to local time, by the offset of the process's zone at that moment. Fails with ERROR_INVALID_PARAMETER.
PLATFORM_EXPORT BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local) noexcept;

// The calendar fields of a time up to the year 30827; no zone applies. Fails with ERROR_INVALID_PARAMETER.
PLATFORM_EXPORT BOOL FileTimeToSystemTime(const FILETIME* time, SYSTEMTIME* fields) noexcept;
PLATFORM_EXPORT BOOL SystemTimeToFileTime(const SYSTEMTIME* fields, FILETIME* time) noexcept;

// Fills in the biases of the process's zone and tells which of them is in force now.
PLATFORM_EXPORT DWORD GetDynamicTimeZoneInformation(DYNAMIC_TIME_ZONE_INFORMATION* zone) noexcept;

// A monotonic counter of high resolution, and its ticks a second.
PLATFORM_EXPORT BOOL QueryPerformanceCounter(std::int64_t* counter) noexcept;
PLATFORM_EXPORT BOOL QueryPerformanceFrequency(std::int64_t* frequency) noexcept;

}  // namespace Platform
