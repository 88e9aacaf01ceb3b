#include "Host/Run/WatchRegistration.h"

#include "Harbor/Failure.h"
#include "Host/Run/CommandPoint.h"

namespace Host {

using namespace DataCollection::ActionManagement;

WatchRegistration::WatchRegistration(std::string label, ForcedActionConfig config, Report& report)
    : Registration(std::move(label), report),
      config_(std::move(config)),
      path_(CommandPointPath(config_.ParentName, config_.LeafName)) {}

bool WatchRegistration::OnCommand(std::u16string_view path, const TimePoint& time) {
    const bool isCovered = path == path_ || path.starts_with(path_ + u"\\");
    if (isCovered) {
        const std::lock_guard lock(lock_);
        written_ = time;
    }
    return isCovered;
}

Registration::SubscriptionPtr WatchRegistration::Register(IActionManager& manager, IActionListener& listener) {
    SubscriptionPtr subscription;
    Harbor::ThrowIfFailed(manager.SubscribeForcedAction(&listener, &config_, subscription.Address()),
                          "SubscribeForcedAction '" + Label() + "'");
    return subscription;
}

std::optional<TimePoint> WatchRegistration::LatestDue(const TimePoint&) const {
    const std::lock_guard lock(lock_);
    return written_;
}

std::optional<TimePoint> WatchRegistration::NextDue(const TimePoint&) const {
    return std::nullopt;
}

std::optional<std::uint64_t> WatchRegistration::IntervalsReached(const TimePoint&) const {
    return std::nullopt;
}

}  // namespace Host
