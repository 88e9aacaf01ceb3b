#include "Subsystems/ActionManager/Schedule.h"

#include <limits>

namespace DataCollection::ActionManagement {

using std::chrono::milliseconds;
using std::chrono::seconds;

ScheduleFault ExamineSchedule(const TimedActionSettings& settings) noexcept {
    const std::uint32_t interval = settings.IntervalSeconds;
    if ((interval == 0) == (settings.IntervalMilliseconds == 0)) return ScheduleFault::IntervalPresence;
    if (settings.Type == TimedActionType::SpecificTime) {
        const bool divides = interval == 0 || SecondsOfDay % interval == 0;
        const bool isMultiple = interval % SecondsOfDay == 0;
        if (!divides && !isMultiple) return ScheduleFault::IntervalOfDay;
        if (settings.StartSeconds >= SecondsOfDay) return ScheduleFault::StartBeyondDay;
    }
    if (std::uint64_t{interval} * 1000 > std::numeric_limits<std::uint32_t>::max()) {
        return ScheduleFault::IntervalTooLong;
    }
    return ScheduleFault::None;
}

TimePoint FirstRunOfRepeat(const TimedActionSettings& settings, const TimePoint& creation) noexcept {
    return creation + seconds{settings.IntervalSeconds} + milliseconds{settings.IntervalMilliseconds};
}

TimePoint StartInDayOf(const TimePoint& creation, const TimedActionSettings& settings, std::int32_t bias) noexcept {
    std::int32_t start = static_cast<std::int32_t>(settings.StartSeconds) + bias;
    if (start < 0) start += static_cast<std::int32_t>(SecondsOfDay);
    return UtcDayStart(creation) + seconds{start};
}

TimePoint NextDayIfPast(const TimePoint& start, const TimePoint& creation) noexcept {
    return creation > start ? start + std::chrono::hours{24} : start;
}

TimePoint FirstRunOf(const TimedActionSettings& settings, const TimePoint& creation, std::int32_t bias) noexcept {
    if (settings.Type == TimedActionType::Repeat) return FirstRunOfRepeat(settings, creation);
    return NextDayIfPast(StartInDayOf(creation, settings, settings.IsLocalTime ? bias : 0), creation);
}

ScheduleCheck CheckSchedule(const TimePoint& firstRun, milliseconds interval, const TimePoint& lastTriggered,
                            const TimePoint& now) noexcept {
    ScheduleCheck check;
    if (now < firstRun) return check;
    check.firstRunReached = true;
    const auto elapsed = std::chrono::duration_cast<milliseconds>(now - firstRun);
    const auto intervalsPassed = elapsed / interval;
    check.intervalStart = firstRun + intervalsPassed * interval;
    check.due = lastTriggered <= check.intervalStart;
    return check;
}

}  // namespace DataCollection::ActionManagement
