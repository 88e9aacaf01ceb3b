// The number of calls, and how late they were.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "Schedules/TimePoint.h"

namespace Host {

using DataCollection::ActionManagement::Ticks;

// Counts by tenths of a millisecond, so that the memory in use does not grow with the number of calls. Not thread-safe.
class LatenessStatistics {
public:
    struct Range {
        double min, median, max;  // in milliseconds; the lower median of an even number
    };

    // Counts a call; its lateness may be unknown.
    void Add(std::optional<Ticks> lateness);

    std::uint64_t Calls() const noexcept { return calls_; }
    // Nothing while no lateness is known.
    [[nodiscard]] std::optional<Range> LatenessRange() const;

private:
    std::uint64_t calls_ = 0;
    std::uint64_t measured_ = 0;
    std::map<std::int64_t, std::uint64_t> callsByTenths_;
};

// Rounded down to tenths.
[[nodiscard]] double InMilliseconds(Ticks time) noexcept;

}  // namespace Host
