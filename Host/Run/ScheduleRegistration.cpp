#include "Host/Run/ScheduleRegistration.h"

#include "Harbor/Failure.h"
#include "Host/Schedules/LocalTime.h"
#include "Schedules/Schedule.h"
#include "Schedules/TimeZoneBias.h"

namespace Host {

using namespace DataCollection::ActionManagement;

namespace {

// Without a time zone the module takes local time as UTC, too.
std::int32_t BiasOrZero() {
    std::int32_t bias = 0;
    (void)GetLocalTimeZoneBias(bias);
    return bias;
}

}  // namespace

ScheduleRegistration::ScheduleRegistration(std::string label, const TimedActionSettings& settings, Report& report)
    : Registration(std::move(label), report), settings_(settings) {}

Registration::SubscriptionPtr ScheduleRegistration::Register(IActionManager& manager, IActionListener& listener) {
    firstRun_ = FirstRunOf(settings_, CurrentTime(), BiasOrZero()).time;
    SubscriptionPtr subscription;
    Harbor::ThrowIfFailed(manager.SubscribeRegularAction(&listener, &settings_, subscription.Address()),
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

std::optional<std::uint64_t> ScheduleRegistration::IntervalsReached(const TimePoint& now) const {
    const auto latest = LatestDue(now);
    return latest ? static_cast<std::uint64_t>((*latest - firstRun_) / Ticks(IntervalOf(settings_))) + 1 : 0;
}

}  // namespace Host
