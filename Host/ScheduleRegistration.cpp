#include "Host/ScheduleRegistration.h"

#include "Host/Failure.h"
#include "Subsystems/ActionManager/Schedule.h"
#include "Subsystems/ActionManager/TimedAction.h"

namespace Host {

using namespace DataCollection::ActionManagement;

namespace {

TimePoint FirstRun(const TimedActionSettings& settings, const TimePoint& now) {
    if (settings.Type == TimedActionType::Repeat) return FirstRunOfRepeat(settings, now);
    std::int32_t bias = 0;
    // Without a zone the module, too, takes the time as UTC.
    if (settings.IsLocalTime) (void)GetLocalTimeZoneBias(bias);
    return NextDayIfPast(StartInDayOf(now, settings, bias), now);
}

}  // namespace

ScheduleRegistration::ScheduleRegistration(std::string label, const TimedActionSettings& settings, Report& report)
    : Registration(std::move(label), report), settings_(settings) {}

Registration::SubscriptionPtr ScheduleRegistration::Register(IActionManager& manager, IActionListener& listener) {
    firstRun_ = FirstRun(settings_, CurrentTime());
    SubscriptionPtr subscription;
    Check(manager.SubscribeRegularAction(&listener, &settings_, subscription.Address()),
          "SubscribeRegularAction '" + Label() + "'");
    return subscription;
}

std::optional<TimePoint> ScheduleRegistration::LatestDue(const TimePoint& now) const {
    const ScheduleCheck check = CheckSchedule(firstRun_, IntervalOf(settings_), {}, now);
    return check.firstRunReached ? std::optional(check.intervalStart) : std::nullopt;
}

std::optional<TimePoint> ScheduleRegistration::NextDue(const TimePoint& now) const {
    const auto latest = LatestDue(now);
    return latest ? *latest + IntervalOf(settings_) : firstRun_;
}

}  // namespace Host
