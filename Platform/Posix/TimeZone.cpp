#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "ErrnoFailure.h"
#include "FileTimes.h"
#include "Platform/Process.h"
#include "Utf.h"

namespace Platform {

using namespace Common;
using namespace Posix;

namespace {

struct LocalOffset {
    std::int64_t seconds;  // local time minus UTC
    bool isDaylight;

    bool operator==(const LocalOffset&) const = default;
};

std::optional<LocalOffset> OffsetAt(time_t unixTime) noexcept {
    tm local;
    if (localtime_r(&unixTime, &local) == nullptr) return std::nullopt;
    return LocalOffset{local.tm_gmtoff, local.tm_isdst > 0};
}

time_t UnixTimeOf(std::int64_t ticks) noexcept {
    return ticks / TicksPerSecond - UnixEpochSeconds;
}

// Whether the C library knows the zone: a file of the zone database, or a rule such as "CET-1CEST".
bool IsKnownZone(std::string_view zone) {
    if (zone.starts_with(':')) zone.remove_prefix(1);
    if (zone.empty()) return true;
    const char* const directory = std::getenv("TZDIR");
    const std::string file =
        std::string(directory != nullptr ? directory : "/usr/share/zoneinfo").append("/").append(zone);
    if (access(zone.starts_with('/') ? std::string(zone).c_str() : file.c_str(), R_OK) == 0) return true;
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr std::size_t shortestName = 3;
    const std::size_t length = zone.starts_with('<') ? zone.find('>') + 1 : zone.find_first_not_of(letters);
    return length < zone.size() && length >= shortestName &&
           std::string_view("+-0123456789").find(zone[length]) != std::string_view::npos;
}

// The C library takes UTC for a zone that it does not know, without a report. Each is reported once.
void ReportUnknownZone() noexcept {
    static constinit std::atomic<std::size_t> reported{0};  // hash of the zone that was reported last
    OrOutOfMemory(FALSE, [] {
        const char* const value = std::getenv("TZ");
        const std::string zone = value != nullptr ? value : "";
        const std::size_t hash = IsKnownZone(zone) ? 0 : std::hash<std::string>()(zone);
        if (reported.exchange(hash, std::memory_order_relaxed) == hash || hash == 0) return FALSE;
        OutputDebugStringW(ToWide("TZ: there is no time zone '" + zone + "', UTC is used\n").c_str());
        return TRUE;
    });
}

// The C library looks at TZ and at the file of the zone only when tzset is called. That reads the environment, so it is
// not called more often than needed.
void FollowZone() noexcept {
    constexpr DWORD intervalMs = 5000;
    static constinit std::atomic<DWORD> lastTick{0};  // 0: never
    const DWORD now = std::max(GetTickCount(), DWORD{1});
    DWORD last = lastTick.load(std::memory_order_relaxed);
    if (last != 0 && now - last < intervalMs) return;
    if (!lastTick.compare_exchange_strong(last, now, std::memory_order_relaxed)) return;
    tzset();
    ReportUnknownZone();
}

// The nearest other offset within half a year in either direction, if any.
std::optional<LocalOffset> OtherOffset(time_t now, const LocalOffset& present) noexcept {
    constexpr std::int64_t halfYear = 183;
    for (std::int64_t day = 1; day <= halfYear; ++day) {
        for (const std::int64_t distance : {day * SecondsPerDay, -day * SecondsPerDay}) {
            const auto offset = OffsetAt(now + distance);
            if (offset && offset->seconds != present.seconds) return offset;
        }
    }
    return std::nullopt;
}

LONG MinutesOf(std::int64_t seconds) noexcept {
    return static_cast<LONG>(seconds / SecondsPerMinute);
}

}  // namespace

BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local) noexcept {
    if (utc == nullptr || local == nullptr) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    const std::int64_t ticks = TicksOf(*utc);
    if (ticks < 0) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    FollowZone();
    const auto offset = OffsetAt(UnixTimeOf(ticks));
    std::int64_t localTicks = 0;
    if (!offset || __builtin_add_overflow(ticks, offset->seconds * TicksPerSecond, &localTicks) || localTicks < 0) {
        return Fail(ERROR_INVALID_PARAMETER, FALSE);
    }
    *local = FileTimeOf(localTicks);
    return TRUE;
}

DWORD GetDynamicTimeZoneInformation(DYNAMIC_TIME_ZONE_INFORMATION* zone) noexcept {
    if (zone == nullptr) return Fail(ERROR_INVALID_PARAMETER, TIME_ZONE_ID_INVALID);
    tzset();
    FILETIME utc;
    GetSystemTimeAsFileTime(&utc);
    const time_t now = UnixTimeOf(TicksOf(utc));
    const auto present = OffsetAt(now);
    if (!present) return Fail(ERROR_INVALID_PARAMETER, TIME_ZONE_ID_INVALID);

    const LONG bias = -MinutesOf(present->seconds);
    const auto other = OtherOffset(now, *present);
    if (!other) {
        *zone = {.Bias = bias};
        return TIME_ZONE_ID_UNKNOWN;
    }
    const LONG otherBias = -MinutesOf(other->seconds);
    if (present->isDaylight) {
        *zone = {.Bias = otherBias, .DaylightBias = bias - otherBias};
        return TIME_ZONE_ID_DAYLIGHT;
    }
    *zone = {.Bias = bias, .DaylightBias = otherBias - bias};
    return TIME_ZONE_ID_STANDARD;
}

}  // namespace Platform
