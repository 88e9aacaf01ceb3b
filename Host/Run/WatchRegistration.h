// The registration of a forced action: of a command point.
#pragma once

#include "Host/Run/Registration.h"

namespace Host {

// A call is due when its command is written. If several commands are written within a cycle, the module serves the
// last.
class WatchRegistration final : public Registration {
public:
    WatchRegistration(std::string label, DataCollection::ActionManagement::ForcedActionConfig config, Report& report);

    bool OnCommand(std::u16string_view path, const TimePoint& time) override;

private:
    SubscriptionPtr Register(DataCollection::ActionManagement::IActionManager& manager,
                             DataCollection::ActionManagement::IActionListener& listener) override;
    std::optional<TimePoint> LatestDue(const TimePoint& now) const override;
    std::optional<TimePoint> NextDue(const TimePoint& now) const override;
    std::optional<std::uint64_t> IntervalsReached(const TimePoint& now) const override;

    const DataCollection::ActionManagement::ForcedActionConfig config_;
    const Harbor::WideString path_;

    mutable Harbor::Lock lock_;  // guards written_
    std::optional<TimePoint> written_;
};

}  // namespace Host
