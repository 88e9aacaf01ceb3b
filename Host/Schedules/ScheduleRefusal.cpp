#include "Host/Schedules/ScheduleRefusal.h"

#include "Schedules/Schedule.h"

namespace Host {

using namespace DataCollection::ActionManagement;

namespace {

const char* RuleOf(ScheduleFault fault) noexcept {
    switch (fault) {
        case ScheduleFault::None:
            break;
        case ScheduleFault::IntervalPresence:
            return "the interval must not be 0";
        case ScheduleFault::IntervalOfDay:
            return "an interval in seconds must divide a day of 86400 s, or be a multiple of it";
        case ScheduleFault::StartBeyondDay:
            return "the start must be a second of the day";
        case ScheduleFault::IntervalTooLong:
            return "the interval must be below 2^32 ms, which is 49.7 days";
    }
    return nullptr;
}

}  // namespace

std::optional<std::string> RefusalOf(const TimedActionSettings& schedule) {
    const char* const rule = RuleOf(CheckSettings(schedule));
    if (rule == nullptr) return std::nullopt;
    return std::string("refused: ") + rule;
}

}  // namespace Host
