#include "Host/LocalTime.h"

#include <time.h>

#include <cstdlib>
#include <filesystem>

#include "Common/Format.h"
#include "Common/Text.h"
#include "Host/Failure.h"
#include "Platform/Time.h"

namespace Host {
namespace {

using DataCollection::ActionManagement::Ticks;

// From 1601, where the system's file times begin, to 1970.
constexpr Ticks FileTimeEpoch = std::chrono::seconds{11644473600};

Platform::FILETIME ToFileTime(const TimePoint& time) noexcept {
    const auto ticks = static_cast<std::uint64_t>((time.time_since_epoch() + FileTimeEpoch).count());
    return {static_cast<Platform::DWORD>(ticks), static_cast<Platform::DWORD>(ticks >> 32)};
}

TimePoint FromFileTime(const Platform::FILETIME& time) noexcept {
    const std::uint64_t ticks = (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
    return TimePoint{Ticks{static_cast<std::int64_t>(ticks)} - FileTimeEpoch};
}

Platform::FILETIME ToLocal(const TimePoint& time) {
    const Platform::FILETIME utc = ToFileTime(time);
    Platform::FILETIME local{};
    CheckPlatform(Platform::FileTimeToLocalFileTime(&utc, &local) != 0, "local time");
    return local;
}

std::string Text(const Platform::FILETIME& local, char16_t separator) {
    Platform::SYSTEMTIME fields{};
    CheckPlatform(Platform::FileTimeToSystemTime(&local, &fields) != 0, "calendar fields");
    return Harbor::ToUtf8(Harbor::FormatWide(u"%04u-%02u-%02u%s%02u:%02u:%02u.%03u", fields.wYear, fields.wMonth,
                                             fields.wDay, std::u16string_view(&separator, 1), fields.wHour,
                                             fields.wMinute, fields.wSecond, fields.wMilliseconds));
}

std::string OffsetText(std::chrono::minutes offset) {
    const std::u16string_view sign = offset.count() < 0 ? u"-" : u"+";
    const auto minutes = static_cast<std::uint32_t>(std::chrono::abs(offset).count());
    return Harbor::ToUtf8(Harbor::FormatWide(u"%s%02u:%02u", sign, minutes / 60, minutes % 60));
}

}  // namespace

bool SetLocalZone(const std::string& name) {
    const char* const given = std::getenv("TZDIR");
    const std::filesystem::path database = given != nullptr ? given : "/usr/share/zoneinfo";
    const std::filesystem::path inside = std::filesystem::path(name).lexically_normal();
    const bool isName = inside.is_relative() && !inside.empty() && *inside.begin() != "..";
    if (!isName || !std::filesystem::is_regular_file(database / inside)) return false;
    setenv("TZ", (":" + inside.string()).c_str(), 1);
    tzset();
    return true;
}

std::chrono::seconds LocalOffset(const TimePoint& time) {
    return std::chrono::round<std::chrono::seconds>(FromFileTime(ToLocal(time)) - time);
}

std::string LocalTimeText(const TimePoint& time) {
    return Text(ToLocal(time), u' ');
}

std::string IsoTimeText(const TimePoint& time) {
    const Platform::FILETIME local = ToLocal(time);
    return Text(local, u'T') + OffsetText(std::chrono::round<std::chrono::minutes>(LocalOffset(time)));
}

std::string UtcTimeText(const TimePoint& time) {
    return Text(ToFileTime(time), u'T') + "Z";
}

}  // namespace Host
