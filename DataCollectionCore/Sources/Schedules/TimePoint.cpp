#include "Schedules/TimePoint.h"

#include "Common/Base/FileTime.h"
#include "Common/Base/Format.h"

namespace DataCollection::ActionManagement {

TimePoint FromFileTime(const Platform::FILETIME& fileTime) noexcept {
    return TimePoint{Ticks{static_cast<std::int64_t>(Harbor::TicksOf(fileTime))} - FileTimeEpoch};
}

Platform::FILETIME ToFileTime(const TimePoint& time) noexcept {
    return Harbor::FileTimeOf(static_cast<std::uint64_t>(time.time_since_epoch().count()) +
                              static_cast<std::uint64_t>(FileTimeEpoch.count()));
}

TimePoint UtcDayStart(const TimePoint& time) noexcept {
    const auto wholeSeconds = std::chrono::time_point_cast<std::chrono::seconds>(time);
    return std::chrono::floor<std::chrono::days>(wholeSeconds);
}

Harbor::WideString FormatTimePoint(const TimePoint& time) {
    Platform::FILETIME fileTime = ToFileTime(time);
    if (static_cast<std::int32_t>(fileTime.dwHighDateTime) < 0) fileTime = {};
    Platform::SYSTEMTIME fields{};
    Platform::FileTimeToSystemTime(&fileTime, &fields);
    return Harbor::FormatWide(u"%04u-%02u-%02u %02u:%02u:%02u.%03u", fields.wYear, fields.wMonth, fields.wDay,
                              fields.wHour, fields.wMinute, fields.wSecond, fields.wMilliseconds);
}

}  // namespace DataCollection::ActionManagement
