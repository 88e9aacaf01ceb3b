// How many calls came, and how late.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "Schedules/TimePoint.h"

namespace Host {

using DataCollection::ActionManagement::Ticks;

// Counts by tenths of a millisecond, so that the memory it takes doesn't grow with the calls. No locks here.
class LatenessStatistics {
public:
    struct Range {
        double min, median, max;  // in milliseconds; of an even count the lower of the two in the middle
    };

    // Nothing: a call of which it isn't known.
    void Add(std::optional<Ticks> lateness);

    std::uint64_t Calls() const noexcept { return calls_; }
    // Nothing as long as no lateness is known.
    [[nodiscard]] std::optional<Range> LatenessRange() const;

private:
    std::uint64_t calls_ = 0;
    std::uint64_t measured_ = 0;
    std::map<std::int64_t, std::uint64_t> callsByTenths_;
};

[[nodiscard]] double InMilliseconds(Ticks time) noexcept;  // in full tenths

}  // namespace Host
