#include "Subsystems/ActionManager/TimePoint.h"

#include "Common/Format.h"
#include "Platform/Time.h"

namespace DataCollection::ActionManagement {
namespace {

// From 1601, where the system's file times begin, to 1970.
constexpr Ticks FileTimeEpoch = std::chrono::seconds{11644473600};

}  // namespace

TimePoint CurrentTime() noexcept {
    Platform::FILETIME now{};
    Platform::GetSystemTimePreciseAsFileTime(&now);
    const std::uint64_t ticks = (std::uint64_t{now.dwHighDateTime} << 32) | now.dwLowDateTime;
    return TimePoint{Ticks{static_cast<std::int64_t>(ticks)} - FileTimeEpoch};
}

TimePoint UtcDayStart(const TimePoint& time) noexcept {
    const auto wholeSeconds = std::chrono::time_point_cast<std::chrono::seconds>(time);
    return std::chrono::floor<std::chrono::days>(wholeSeconds);
}

Harbor::WideString FormatTimePoint(const TimePoint& time) {
    const auto sum =
        static_cast<std::uint64_t>(time.time_since_epoch().count()) + static_cast<std::uint64_t>(FileTimeEpoch.count());
    const std::uint64_t ticks = static_cast<std::int64_t>(sum) < 0 ? 0 : sum;
    const Platform::FILETIME fileTime{static_cast<Platform::DWORD>(ticks), static_cast<Platform::DWORD>(ticks >> 32)};
    Platform::SYSTEMTIME fields{};
    Platform::FileTimeToSystemTime(&fileTime, &fields);
    return Harbor::FormatWide(u"%04u-%02u-%02u %02u:%02u:%02u.%03u", fields.wYear, fields.wMonth, fields.wDay,
                              fields.wHour, fields.wMinute, fields.wSecond, fields.wMilliseconds);
}

}  // namespace DataCollection::ActionManagement
