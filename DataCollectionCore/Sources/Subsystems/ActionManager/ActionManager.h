// The central component: it takes registrations and commands, keeps what is registered, and has one worker that runs
// the timer cycle.
//
// Its sources are ActionManager.cpp (configuration, registration, end), TimerCycle.cpp (the cycle) and
// ForcedCommands.cpp (commands of the configuration service). The worker, the registries and the queue are classes of
// their own.
#pragma once

#include "Common/Components/CComponentObject.h"
#include "DataCollection/ActionManager.h"
#include "Harbor/ConfigService.h"
#include "Harbor/Configurable.h"
#include "Subsystems/ActionManager/ConfigurationUpdateQueue.h"
#include "Subsystems/ActionManager/ForcedActionRegistry.h"
#include "Subsystems/ActionManager/RegularActionRegistry.h"
#include "Subsystems/ActionManager/SubscriptionRegistry.h"
#include "Subsystems/ActionManager/Worker.h"

namespace DataCollection::ActionManagement {

class ActionManager : public Harbor::ComponentRoot,
                      public Harbor::IConfigurable,
                      public Harbor::IACModifyCallback,
                      public IActionManager {
public:
    static constexpr const char* Tag =
        "CComponentObject<class DataCollection::ActionManagement::ActionManager>::CComponentObject";
    // IACModifyCallback has no id: the manager hands it out itself.
    using Queryable = Harbor::InterfaceList<Harbor::IConfigurable, IActionManager>;

    // Acts once, also if it fails: a later call returns 0 and does nothing.
    HRESULT Configure(AcnHandle config) override;
    HRESULT SubscribeRegularAction(IActionListener* listener, const TimedActionSettings* schedule,
                                   IActionSubscription** subscription) override;
    HRESULT SubscribeForcedAction(IActionListener* listener, const ForcedActionConfig* config,
                                  IActionSubscription** subscription) override;
    // May be called on any thread of the service. Takes only the queue's lock.
    HRESULT OnTriggered(Harbor::IACModifySubscription* subscription, int kind,
                        Harbor::IACNodeModifyEnum* modifications) override;

    // Stops the worker after the cycle under way and releases the watches. Must not be called on the worker's thread.
    void FinalRelease() noexcept;

    // One cycle. The worker runs it at each wake, with its state lock held.
    void OnTimerEvent(const TimePoint& now) noexcept;

private:
    // The steps of the cycle.
    void UpdateSubscriptions() noexcept;
    void EraseDisposedActions();
    void UpdateRegularActions(const TimePoint& now);
    void UpdateForcedActions();
    void TriggerActions() noexcept;

    void TriggerForcedAction(const QueuedUpdate& update);

    // Registration.
    Harbor::ComponentPtr<IActionSubscription> CreateSubscription(
        IActionListener* listener, const std::vector<Harbor::ComponentPtr<IActionControl>>& actions);
    ForcedEntry CreateForcedActions(const ForcedActionConfig& config);
    void SubscribeToConfigurationChanges(const WideString& path,
                                         Harbor::ComponentPtr<Harbor::IACModifySubscription>& subscription,
                                         bool withOptionBit0);

    std::atomic<bool> configured_{false};  // set by the first Configure, never cleared
    ConfigurationUpdateQueue updateQueue_;
    std::atomic<std::uint64_t> forcedRegistrations_{0};  // changed under the registry lock

    // Guards the three registries. The steps of the cycle take it one after the other; it is never held across a call
    // of a listener.
    Harbor::Lock registryLock_;
    SubscriptionRegistry subscriptions_;
    RegularActionRegistry regularActions_;
    ForcedActionRegistry forcedSubscriptions_;
    std::uint64_t disposalsAtLastErase_ = 0;  // the worker's

    Worker worker_{[this](const TimePoint& now) { OnTimerEvent(now); }};
};

}  // namespace DataCollection::ActionManagement
