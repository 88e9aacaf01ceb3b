#include "Host/Run/Registration.h"

#include <algorithm>

#include "Common/Base/Text.h"
#include "Harbor/Failure.h"
#include "Host/Run/ActionListener.h"
#include "Host/Schedules/LocalTime.h"

namespace Host {

using namespace DataCollection::ActionManagement;

Registration::Registration(std::string label, Report& report) : label_(std::move(label)), report_(report) {}

void Registration::Subscribe(IActionManager& manager) {
    const auto listener = ActionListener::Make([this](const Harbor::WideString& action) { OnCall(action); });
    subscription_ = Register(manager, *listener.Get());
    Harbor::ThrowIfFailed(subscription_->Start(), "Start '" + label_ + "'");
}

void Registration::Unsubscribe() {
    Harbor::ThrowIfFailed(subscription_->Unsubscribe(), "Unsubscribe '" + label_ + "'");
    subscription_.Reset();
}

bool Registration::OnCommand(std::u16string_view, const TimePoint&) {
    return false;
}

RegistrationState Registration::State(const TimePoint& now) const {
    const std::lock_guard lock(lock_);
    std::optional<std::uint64_t> merged;
    if (intervalsReached_) merged = std::max(*intervalsReached_, statistics_.Calls()) - statistics_.Calls();
    return {label_, statistics_.Calls(), merged, statistics_.LatenessRange(), last_, NextDue(now)};
}

void Registration::OnCall(const Harbor::WideString& action) {
    const TimePoint now = CurrentTime();
    const auto due = LatestDue(now);
    const auto lateness = due ? std::optional(now - *due) : std::nullopt;
    {
        const std::lock_guard lock(lock_);
        statistics_.Add(lateness);
        last_ = now;
        intervalsReached_ = std::max(intervalsReached_, IntervalsReached(now));
    }
    report_.Add({now, label_, Harbor::ToUtf8(action), lateness});
}

}  // namespace Host
