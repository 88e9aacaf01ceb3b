// The schedule of a regular action.
#pragma once

#include <cstdint>

namespace DataCollection::ActionManagement {

enum class TimedActionType : std::int32_t {
    Repeat = 0,        // runs at the interval, counted from the moment of registration
    SpecificTime = 1,  // runs at a second of the day, and from there at the interval
};

// The default is the schedule without an interval, which is refused. A client sets only what differs from it:
//
//     using namespace DataCollection::ActionManagement;
//     const TimedActionSettings everyTwoSeconds{.IntervalSeconds = 2};
//     const TimedActionSettings atSixAndEighteen{.StartSeconds = 6 * 3600,
//                                                .IsLocalTime = true,
//                                                .IntervalSeconds = 12 * 3600,
//                                                .Type = TimedActionType::SpecificTime};
//
// Exactly one of the two intervals is not 0, and the interval is below 2^32 ms (49.7 days). For SpecificTime an
// interval in seconds divides a day of 86400 s or is a multiple of it. A schedule that breaks a rule is refused with
// E_INVALIDARG, and an ERR line in the module's log names the rule.
struct TimedActionSettings {
    std::uint32_t StartSeconds = 0;  // SpecificTime: second of the day, below 86400
    bool IsLocalTime = false;        // SpecificTime: StartSeconds is local time, by the UTC offset at the registration
    std::uint32_t IntervalSeconds = 0;
    TimedActionType Type = TimedActionType::Repeat;
    std::uint32_t IntervalMilliseconds = 0;
};

}  // namespace DataCollection::ActionManagement
