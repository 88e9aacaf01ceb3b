#include "Schedules/Schedule.h"

#include <limits>

namespace DataCollection::ActionManagement {

using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

TimePoint StartInDayOf(const TimePoint& creation, const TimedActionSettings& settings, std::int32_t bias) noexcept {
    std::int32_t start = static_cast<std::int32_t>(settings.StartSeconds);
    if (settings.IsLocalTime) {
        start += bias;
        if (start < 0) start += static_cast<std::int32_t>(SecondsPerDay);
    }
    return UtcDayStart(creation) + seconds{start};
}

}  // namespace

ScheduleFault CheckSettings(const TimedActionSettings& settings) noexcept {
    const std::uint32_t interval = settings.IntervalSeconds;
    if ((interval == 0) == (settings.IntervalMilliseconds == 0)) return ScheduleFault::IntervalPresence;
    if (settings.Type == TimedActionType::SpecificTime) {
        const bool divides = interval == 0 || SecondsPerDay % interval == 0;
        const bool isMultiple = interval % SecondsPerDay == 0;
        if (!divides && !isMultiple) return ScheduleFault::IntervalOfDay;
        if (settings.StartSeconds >= SecondsPerDay) return ScheduleFault::StartBeyondDay;
    }
    if (std::uint64_t{interval} * 1000 > std::numeric_limits<std::uint32_t>::max()) {
        return ScheduleFault::IntervalTooLong;
    }
    return ScheduleFault::None;
}

FirstRun FirstRunOf(const TimedActionSettings& settings, const TimePoint& creation, std::int32_t bias) noexcept {
    if (settings.Type == TimedActionType::Repeat) return {creation + IntervalOf(settings)};
    const TimePoint start = StartInDayOf(creation, settings, bias);
    if (creation > start) return {start + std::chrono::hours{24}, true};
    return {start};
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

TimePoint DueFrom(const TimePoint& firstRun, milliseconds interval, const TimePoint& lastTriggered) noexcept {
    if (lastTriggered <= firstRun) return firstRun;
    const Ticks step = interval;
    const Ticks elapsed = lastTriggered - firstRun;
    const auto intervals = elapsed / step + (elapsed % step == Ticks::zero() ? 0 : 1);
    return firstRun + intervals * step;
}

}  // namespace DataCollection::ActionManagement
