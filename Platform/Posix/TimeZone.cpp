#include <time.h>

#include <atomic>
#include <optional>

#include "ErrnoFailure.h"
#include "FileTimes.h"

namespace Platform {

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

// The offset of the quarter of an hour that was converted last. Since 1972 all offsets but a few change at full
// quarters of an hour of UTC, so one conversion of the C library is valid for all times of a quarter. The word also
// contains a hash of the results of tzset, so that a change of the zone is noticed. Two zones with equal results (names
// and standard offset) are not distinguished until the quarter ends.
class OffsetCache {
public:
    [[nodiscard]] std::optional<std::int64_t> Find(std::int64_t ticks) const noexcept {
        const std::uint64_t word = word_.load(std::memory_order_relaxed);
        if (word >> OffsetBits != KeyOf(ticks)) return std::nullopt;
        return static_cast<std::int64_t>(word & OffsetMask) - OffsetBase;
    }

    void Store(std::int64_t ticks, std::int64_t offset) noexcept {
        const std::int64_t stored = offset + OffsetBase;
        if (stored < 0 || stored > static_cast<std::int64_t>(OffsetMask)) return;
        word_.store(KeyOf(ticks) << OffsetBits | static_cast<std::uint64_t>(stored), std::memory_order_relaxed);
    }

private:
    static constexpr unsigned QuarterBits = 30;
    static constexpr unsigned OffsetBits = 18;
    static constexpr unsigned ZoneBits = 64 - QuarterBits - OffsetBits;
    static constexpr std::uint64_t OffsetMask = (std::uint64_t{1} << OffsetBits) - 1;
    static constexpr std::int64_t OffsetBase = std::int64_t{1} << (OffsetBits - 1);
    static constexpr std::int64_t TicksPerQuarter = 15 * SecondsPerMinute * TicksPerSecond;
    static constexpr std::uint64_t NoWord = ~std::uint64_t{0};
    static_assert(INT64_MAX / TicksPerQuarter < (std::int64_t{1} << QuarterBits) - 1,
                  "no time has the quarter of NoWord");

    static std::uint64_t KeyOf(std::int64_t ticks) noexcept {
        return ZoneKey() << QuarterBits | static_cast<std::uint64_t>(ticks / TicksPerQuarter);
    }

    static std::uint64_t ZoneKey() noexcept {
        constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15;
        std::uint64_t key = static_cast<std::uint64_t>(timezone) ^ static_cast<std::uint64_t>(daylight) << 32;
        for (const char* const name : tzname) key = (key ^ reinterpret_cast<std::uintptr_t>(name)) * multiplier;
        return key >> (64 - ZoneBits);
    }

    std::atomic<std::uint64_t> word_{NoWord};
};

constinit OffsetCache CachedOffset;

std::optional<std::int64_t> LocalOffsetTicks(std::int64_t ticks) noexcept {
    if (const auto cached = CachedOffset.Find(ticks)) return *cached * TicksPerSecond;
    const auto offset = OffsetAt(UnixTimeOf(ticks));
    if (!offset) return std::nullopt;
    CachedOffset.Store(ticks, offset->seconds);
    return offset->seconds * TicksPerSecond;
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
    const auto offset = LocalOffsetTicks(ticks);
    std::int64_t localTicks = 0;
    if (!offset || __builtin_add_overflow(ticks, *offset, &localTicks) || localTicks < 0) {
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
