#include "Host/Schedules/ScheduleRefusal.h"

#include "Host/Schedules/Duration.h"
#include "Schedules/Schedule.h"

namespace Host {

using namespace DataCollection::ActionManagement;

namespace {

// The nearest allowed interval of whole seconds below and above one that is not allowed, as a remedy.
std::string AllowedIntervals(std::uint32_t interval) {
    std::uint32_t below = interval, above = interval;
    const auto isAllowed = [](std::uint32_t value) {
        return value <= SecondsPerDay ? SecondsPerDay % value == 0 : value % SecondsPerDay == 0;
    };
    while (!isAllowed(below)) --below;
    while (!isAllowed(above)) ++above;
    return "use " + DurationText(std::chrono::seconds{below}) + " or " + DurationText(std::chrono::seconds{above});
}

std::string RuleOf(ScheduleFault fault, const TimedActionSettings& schedule) {
    switch (fault) {
        case ScheduleFault::None:
            break;
        case ScheduleFault::IntervalPresence:
            return "the interval is 0; the shortest is 1ms";
        case ScheduleFault::IntervalOfDay:
            return "the interval of " + DurationText(std::chrono::seconds{schedule.IntervalSeconds}) +
                   " neither divides a day nor is a multiple of one; " + AllowedIntervals(schedule.IntervalSeconds) +
                   ", or write the interval in ms";
        case ScheduleFault::StartBeyondDay:
            return "the start is not a second of the day; the last one is 23:59:59";
        case ScheduleFault::IntervalTooLong:
            return "the interval of " + DurationText(std::chrono::seconds{schedule.IntervalSeconds}) +
                   " is too long; it must be below 2^32 ms, which is 49.7 days";
    }
    return {};
}

}  // namespace

std::optional<std::string> RefusalOf(const TimedActionSettings& schedule) {
    const ScheduleFault fault = CheckSettings(schedule);
    if (fault == ScheduleFault::None) return std::nullopt;
    return "refused: " + RuleOf(fault, schedule);
}

}  // namespace Host
