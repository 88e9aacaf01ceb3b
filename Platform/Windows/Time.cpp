#include "Platform/Time.h"

#include "Native.h"

namespace Platform {

using Windows::As;

namespace {

std::int64_t TicksOf(const ::FILETIME& time) noexcept {
    return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

// Local time minus UTC, at a moment. The calendar has only milliseconds, so both are rounded down in the same way.
bool LocalOffsetAt(const ::FILETIME& utc, std::int64_t& ticks) noexcept {
    ::SYSTEMTIME utcFields, localFields;
    ::FILETIME whole, local;
    if (!::FileTimeToSystemTime(&utc, &utcFields) || !::SystemTimeToFileTime(&utcFields, &whole) ||
        !::SystemTimeToTzSpecificLocalTime(nullptr, &utcFields, &localFields) ||
        !::SystemTimeToFileTime(&localFields, &local)) {
        return false;
    }
    ticks = TicksOf(local) - TicksOf(whole);
    return true;
}

}  // namespace

DWORD GetTickCount() noexcept {
    return ::GetTickCount();
}

void GetSystemTimeAsFileTime(FILETIME* time) noexcept {
    ::GetSystemTimeAsFileTime(As<::FILETIME>(time));
}

void GetSystemTimePreciseAsFileTime(FILETIME* time) noexcept {
    ::GetSystemTimePreciseAsFileTime(As<::FILETIME>(time));
}

// The system's function of this name applies the offset of today, not that of the given moment.
BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local) noexcept {
    std::int64_t offset = 0;
    if (utc == nullptr || local == nullptr) {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    if (!LocalOffsetAt(*As<const ::FILETIME>(utc), offset)) return FALSE;
    const std::int64_t ticks = TicksOf(*As<const ::FILETIME>(utc)) + offset;
    if (ticks < 0) {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    *local = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    return TRUE;
}

BOOL FileTimeToSystemTime(const FILETIME* time, SYSTEMTIME* fields) noexcept {
    return ::FileTimeToSystemTime(As<const ::FILETIME>(time), As<::SYSTEMTIME>(fields));
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* fields, FILETIME* time) noexcept {
    return ::SystemTimeToFileTime(As<const ::SYSTEMTIME>(fields), As<::FILETIME>(time));
}

DWORD GetDynamicTimeZoneInformation(DYNAMIC_TIME_ZONE_INFORMATION* zone) noexcept {
    return ::GetDynamicTimeZoneInformation(As<::DYNAMIC_TIME_ZONE_INFORMATION>(zone));
}

BOOL QueryPerformanceCounter(std::int64_t* counter) noexcept {
    return ::QueryPerformanceCounter(As<::LARGE_INTEGER>(counter));
}

BOOL QueryPerformanceFrequency(std::int64_t* frequency) noexcept {
    return ::QueryPerformanceFrequency(As<::LARGE_INTEGER>(frequency));
}

}  // namespace Platform
