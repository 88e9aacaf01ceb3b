// One registration at the module: its subscription, and the calls that it causes.
#pragma once

#include <string>
#include <string_view>

#include "Common/Base/Lock.h"
#include "DataCollection/ActionManager.h"
#include "Harbor/ComponentPtr.h"
#include "Host/Run/Report.h"

namespace Host {

// Subscribed and unsubscribed by the host's main thread, called by the module's worker. Must outlive the manager.
class Registration {
public:
    Registration(std::string label, Report& report);
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    virtual ~Registration() = default;

    // Registers a listener and starts the subscription. A failure is thrown as Harbor::Failure.
    void Subscribe(DataCollection::ActionManagement::IActionManager& manager);
    void Unsubscribe();

    // Called when a command is about to be written at that path. Returns whether the registration watches it.
    virtual bool OnCommand(std::u16string_view path, const TimePoint& time);

    [[nodiscard]] RegistrationState State(const TimePoint& now) const;

protected:
    const std::string& Label() const noexcept { return label_; }

    using SubscriptionPtr = Harbor::ComponentPtr<DataCollection::ActionManagement::IActionSubscription>;

private:
    virtual SubscriptionPtr Register(DataCollection::ActionManagement::IActionManager& manager,
                                     DataCollection::ActionManagement::IActionListener& listener) = 0;
    // The due time of a call that is made at `now`. May be called on any thread, as the next one.
    virtual std::optional<TimePoint> LatestDue(const TimePoint& now) const = 0;
    virtual std::optional<TimePoint> NextDue(const TimePoint& now) const = 0;
    // How many intervals have begun by `now`. Nothing if no schedule determines the calls.
    virtual std::optional<std::uint64_t> IntervalsReached(const TimePoint& now) const = 0;

    void OnCall(const Harbor::WideString& action);

    const std::string label_;
    Report& report_;
    SubscriptionPtr subscription_;

    mutable Harbor::Lock lock_;  // guards the members below
    LatenessStatistics statistics_;
    std::optional<TimePoint> last_;                  // the time of the last call
    std::optional<std::uint64_t> intervalsReached_;  // by the last call
};

}  // namespace Host
