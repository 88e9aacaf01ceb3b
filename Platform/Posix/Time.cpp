#include "Platform/Time.h"

#include <time.h>

#include "ErrnoFailure.h"
#include "FileTimes.h"

namespace Platform {

using namespace Posix;

namespace {

constexpr std::int64_t NanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t NanosecondsPerMillisecond = 1'000'000;
constexpr std::int64_t MillisecondsPerSecond = 1000;

timespec ReadClock(clockid_t clock) noexcept {
    timespec now{};
    clock_gettime(clock, &now);
    return now;
}

FILETIME ReadWallClock() noexcept {
    const timespec now = ReadClock(CLOCK_REALTIME);
    return FileTimeOf((now.tv_sec + UnixEpochSeconds) * TicksPerSecond + now.tv_nsec / NanosecondsPerTick);
}

}  // namespace

DWORD GetTickCount() noexcept {
    const timespec now = ReadClock(CLOCK_MONOTONIC_COARSE);
    return static_cast<DWORD>(now.tv_sec * MillisecondsPerSecond + now.tv_nsec / NanosecondsPerMillisecond);
}

void GetSystemTimeAsFileTime(FILETIME* time) noexcept {
    *time = ReadWallClock();
}

void GetSystemTimePreciseAsFileTime(FILETIME* time) noexcept {
    *time = ReadWallClock();
}

BOOL QueryPerformanceCounter(std::int64_t* counter) noexcept {
    if (counter == nullptr) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    const timespec now = ReadClock(CLOCK_MONOTONIC);
    *counter = now.tv_sec * NanosecondsPerSecond + now.tv_nsec;
    return TRUE;
}

BOOL QueryPerformanceFrequency(std::int64_t* frequency) noexcept {
    if (frequency == nullptr) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    *frequency = NanosecondsPerSecond;
    return TRUE;
}

}  // namespace Platform
