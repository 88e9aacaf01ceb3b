// Conversion between the platform's FILETIME, which holds two halves of a number, and that number: units of 100 ns
// since 1601-01-01 00:00:00.
#pragma once

#include "Platform/Time.h"

namespace Harbor {

[[nodiscard]] constexpr std::uint64_t TicksOf(const Platform::FILETIME& time) noexcept {
    return (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
}

[[nodiscard]] constexpr Platform::FILETIME FileTimeOf(std::uint64_t ticks) noexcept {
    return {static_cast<Platform::DWORD>(ticks), static_cast<Platform::DWORD>(ticks >> 32)};
}

}  // namespace Harbor
