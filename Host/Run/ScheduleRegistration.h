// The registration of a regular action: of a schedule.
#pragma once

#include "Host/Run/Registration.h"

namespace Host {

// The due times are computed with the module's own arithmetic, from the clock just before the module reads it: exact to
// the clock's tick for a clock schedule, and early by the duration of the registering call for a repeat.
class ScheduleRegistration final : public Registration {
public:
    ScheduleRegistration(std::string label, const DataCollection::ActionManagement::TimedActionSettings& settings,
                         Report& report);

private:
    SubscriptionPtr Register(DataCollection::ActionManagement::IActionManager& manager,
                             DataCollection::ActionManagement::IActionListener& listener) override;
    std::optional<TimePoint> LatestDue(const TimePoint& now) const override;
    std::optional<TimePoint> NextDue(const TimePoint& now) const override;
    std::optional<std::uint64_t> IntervalsReached(const TimePoint& now) const override;

    const DataCollection::ActionManagement::TimedActionSettings settings_;
    TimePoint firstRun_;
};

}  // namespace Host
