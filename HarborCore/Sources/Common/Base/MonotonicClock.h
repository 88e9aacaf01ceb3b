// The platform's monotonic clock, for deadlines.
#pragma once

#include <chrono>

namespace Harbor {

struct MonotonicClock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<MonotonicClock>;
    static constexpr bool is_steady = true;

    static time_point now() noexcept;
};

}  // namespace Harbor
