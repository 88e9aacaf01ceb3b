// A regular action: a schedule that the module keeps.
#pragma once

#include "Host/Run/Registration.h"

namespace Host {

// The due moments are worked out with the module's own arithmetic, from the clock as it is just before the module reads
// it: to the tick for a clock time, and early by the length of the registering call for a repeat.
class ScheduleRegistration final : public Registration {
public:
    ScheduleRegistration(std::string label, const DataCollection::ActionManagement::TimedActionSettings& settings,
                         Report& report);

private:
    SubscriptionPtr Register(DataCollection::ActionManagement::IActionManager& manager,
                             DataCollection::ActionManagement::IActionListener& listener) override;
    std::optional<TimePoint> LatestDue(const TimePoint& now) const override;
    std::optional<TimePoint> NextDue(const TimePoint& now) const override;

    const DataCollection::ActionManagement::TimedActionSettings settings_;
    TimePoint firstRun_;
};

}  // namespace Host
