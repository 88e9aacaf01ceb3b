// One registration at the module: what was asked for, the subscription, and what came of it.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "DataCollection/ActionManager.h"
#include "Harbor/ComponentPtr.h"
#include "Host/Run/Report.h"

namespace Host {

// Registered and ended by the host's main thread, called by the module's worker. It outlives the manager.
class Registration {
public:
    Registration(std::string label, Report& report);
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    virtual ~Registration() = default;

    // Registers a listener and starts it. A refusal is thrown as CallFailure.
    void Subscribe(DataCollection::ActionManagement::IActionManager& manager);
    void Unsubscribe();

    // A command is about to be written at that path.
    virtual void OnCommand(std::u16string_view path, const TimePoint& time);

    [[nodiscard]] RegistrationState State() const;

protected:
    const std::string& Label() const noexcept { return label_; }

    using SubscriptionPtr = Harbor::ComponentPtr<DataCollection::ActionManagement::IActionSubscription>;

private:
    virtual SubscriptionPtr Register(DataCollection::ActionManagement::IActionManager& manager,
                                     DataCollection::ActionManagement::IActionListener& listener) = 0;
    // The due moment that a call at `now` answers. Any thread.
    virtual std::optional<TimePoint> LatestDue(const TimePoint& now) const = 0;
    virtual std::optional<TimePoint> NextDue(const TimePoint& now) const = 0;

    void OnCall(const Harbor::WideString& action);

    const std::string label_;
    Report& report_;
    SubscriptionPtr subscription_;

    mutable std::mutex lock_;  // guards statistics_
    LatenessStatistics statistics_;
};

}  // namespace Host
