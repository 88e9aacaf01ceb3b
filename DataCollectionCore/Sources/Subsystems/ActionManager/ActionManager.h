// The central component: the registry of subscriptions and actions, and the one worker that runs the timer cycle.
//
// Its sources are three rooms: ActionManager.cpp (configuration, worker, registration), TimerCycle.cpp (the cycle and
// regular actions) and ForcedCommands.cpp (commands of the configuration service).
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "Common/Base/ConditionVariable.h"
#include "Common/Base/Thread.h"
#include "Common/Components/CComponentObject.h"
#include "DataCollection/ActionManager.h"
#include "Harbor/ConfigService.h"
#include "Harbor/Configurable.h"
#include "Subsystems/ActionManager/ConfigurationUpdateQueue.h"
#include "Subsystems/ActionManager/ForcedActions.h"
#include "Subsystems/ActionManager/TimedAction.h"

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

    // Acts once, also after a failure: a later call gives 0 and does nothing.
    HRESULT Configure(AcnHandle config) override;
    HRESULT SubscribeRegularAction(IActionListener* listener, const TimedActionSettings* schedule,
                                   IActionSubscription** subscription) override;
    HRESULT SubscribeForcedAction(IActionListener* listener, const ForcedActionConfig* config,
                                  IActionSubscription** subscription) override;
    // On any thread of the service. Takes no lock but the queue's.
    HRESULT OnTriggered(Harbor::IACModifySubscription* subscription, int kind,
                        Harbor::IACNodeModifyEnum* modifications) override;

    // Stops the worker, waiting for the cycle that is under way, and lets go of the watches. Not on the worker's own
    // thread.
    void FinalRelease() noexcept;

    // One cycle. The worker runs it at each wake, with the state lock held.
    void OnTimerEvent(const TimePoint& now) noexcept;

private:
    using Snapshot = std::vector<IActionSubscriptionControl*>;  // holds no references

    struct ForcedEntry {
        Harbor::ComponentPtr<Harbor::IACModifySubscription> subscription;  // the key, counted
        std::shared_ptr<ForcedActions> actions;
    };

    // The worker.
    void Initialize();
    void Start() noexcept;
    void Stop() noexcept;

    // The cycle, in the order of its steps.
    Snapshot UpdateSubscriptions() noexcept;
    void EraseDisposedActions();
    void UpdateRegularActions(const TimePoint& now);
    void UpdateForcedActions();
    void TriggerActions(const Snapshot& snapshot) noexcept;
    void GiveBack(Snapshot snapshot) noexcept;

    bool IsDisposed(const TimedAction& action) const;
    void RemoveForcedSubscription(Harbor::IACModifySubscription* key, const ForcedActions& actions);
    void TriggerForcedAction(Harbor::IACModifySubscription* key, const Harbor::ModifiedNode& update);

    // Registration.
    Harbor::ComponentPtr<IActionSubscription> CreateSubscription(
        IActionListener* listener, const std::vector<Harbor::ComponentPtr<IActionControl>>& actions);
    ForcedEntry CreateForcedActions(const ForcedActionConfig& config);
    void SubscribeToConfigurationChanges(const WideString& path,
                                         Harbor::ComponentPtr<Harbor::IACModifySubscription>& subscription,
                                         bool withOptionBit0);

    std::atomic<bool> configured_{false};  // set by the first Configure, never cleared
    ConfigurationUpdateQueue updateQueue_;

    // The registry, each list in the order of creation. Taken step by step, never across a listener call.
    Harbor::Lock registryLock_;
    std::vector<Harbor::ComponentPtr<IActionSubscriptionControl>> subscriptions_;
    Snapshot snapshotRoom_;  // memory for the next snapshot, reserved at registration
    std::vector<std::shared_ptr<TimedAction>> regularActions_;
    std::unordered_map<Harbor::IACModifySubscription*, ForcedEntry> forcedSubscriptions_;

    // The worker's alone: the watches of pairs that have ended, until the queue has been found empty. Else a new watch
    // could get the address by which a waiting command is known.
    std::vector<Harbor::ComponentPtr<Harbor::IACModifySubscription>> endedWatches_;

    // The worker's state. The worker holds the lock at all times except while it sleeps.
    Harbor::ConditionVariable stopSignal_;
    Harbor::Lock stateLock_;
    bool running_ = false;
    Harbor::Thread worker_;
};

}  // namespace DataCollection::ActionManagement
