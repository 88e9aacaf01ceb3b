#include "Common/Base/MonotonicClock.h"

#include "Platform/Time.h"

namespace Harbor {

MonotonicClock::time_point MonotonicClock::now() noexcept {
    std::int64_t counter = 0;
    std::int64_t frequency = period::den;  // a failure, which no system gives, leaves both
    Platform::QueryPerformanceFrequency(&frequency);
    Platform::QueryPerformanceCounter(&counter);
    // In two parts, as the product of the whole counter may need more than 64 bits.
    return time_point{std::chrono::seconds{counter / frequency} +
                      duration{counter % frequency * period::den / frequency}};
}

}  // namespace Harbor
