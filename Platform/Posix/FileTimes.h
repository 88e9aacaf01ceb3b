// File times as numbers, and the units for their conversion.
#pragma once

#include "Platform/Time.h"

namespace Platform::Posix {

inline constexpr std::int64_t SecondsPerMinute = 60;
inline constexpr std::int64_t SecondsPerHour = 3600;
inline constexpr std::int64_t SecondsPerDay = 86400;
inline constexpr std::int64_t NanosecondsPerTick = 100;
inline constexpr std::int64_t TicksPerMillisecond = 10'000;
inline constexpr std::int64_t TicksPerSecond = 10'000'000;
inline constexpr std::int64_t UnixEpochSeconds = 11'644'473'600;  // from 1601 to 1970

// Returns the ticks of 100 ns since 1601. The result is negative for a file time after the year 30828.
constexpr std::int64_t TicksOf(const FILETIME& time) noexcept {
    return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

constexpr FILETIME FileTimeOf(std::int64_t ticks) noexcept {
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

}  // namespace Platform::Posix
