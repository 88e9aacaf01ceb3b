// The schedule of a regular action.
#pragma once

#include <cstdint>

namespace DataCollection::ActionManagement {

enum class TimedActionType : std::int32_t {
    Repeat = 0,        // runs at the interval, counted from the moment of registration
    SpecificTime = 1,  // runs at a second of the day, and from there at the interval
};

// Exactly one of the two intervals is not 0, and the interval is below 2^32 ms (49.7 days). For SpecificTime an
// interval in seconds divides a day of 86400 s or is a multiple of it.
struct TimedActionSettings {
    std::uint32_t StartSeconds;  // SpecificTime: second of the day, below 86400
    bool IsLocalTime;            // SpecificTime: StartSeconds is local time, by the UTC offset at the registration
    std::uint32_t IntervalSeconds;
    TimedActionType Type;
    std::uint32_t IntervalMilliseconds;
};

}  // namespace DataCollection::ActionManagement
