// The binding of actions to one listener, and the only place where a listener is called.
#pragma once

#include "Common/Base/Lock.h"
#include "Common/Components/CComponentObject.h"
#include "DataCollection/ActionSubscription.h"
#include "Subsystems/ActionManager/ActionImpl.h"
#include "Subsystems/ActionManager/AttachedActions.h"
#include "Subsystems/ActionManager/StateWord.h"

namespace DataCollection::ActionManagement {

class ActionSubscription : public Harbor::ComponentRoot, public IActionSubscription, public IActionSubscriptionControl {
public:
    static constexpr const char* Tag =
        "CComponentObject<class DataCollection::ActionManagement::ActionSubscription>::CComponentObject";
    using Queryable = Harbor::InterfaceList<IActionSubscription, IActionSubscriptionControl>;

    ~ActionSubscription() override;

    // Start, SetAction and TriggerActionsIfNeeded are refused with E_UNEXPECTED and an ERR line from inside a call that
    // this subscription makes (to its listener, or to an action): they would wait for a lock that the thread holds.
    HRESULT Start() override;
    HRESULT Unsubscribe() override;

    // Takes no lock: it may be called only before the subscription is published.
    HRESULT SetListener(IActionListener* listener) override;
    HRESULT SetAction(IActionControl* action) override;
    // Never waits: a subscription whose lock is busy counts as alive, also if the calling thread holds it.
    HRESULT IsAlive(bool* alive) override;
    // Calls the listener for each marked action and clears the mark. Detaches once Unsubscribe was called.
    HRESULT TriggerActionsIfNeeded() override;

    // For the manager, before the subscription is published: the attached actions, which are these, report their marks
    // to the state word, so that they need not be polled.
    void LetReportMarks(const std::vector<ActionImpl*>& actions);

    // The state, for a scan that takes no lock. The word is valid as long as the subscription.
    const StateWord* State() const noexcept { return state_.Get(); }

    // Counts how often a subscription of this module has detached. As long as it does not change, none has died.
    static std::uint64_t Detachments() noexcept { return DetachmentCount.load(); }

private:
    // Returns whether this thread is inside a call of this subscription. Then `operation` is logged as refused.
    bool IsRefusedInsideOwnCall(const Harbor::WideChar* operation);
    void UnsubscribeInternal(const std::unique_lock<Harbor::HolderLock>& lock);
    void DeliverMarkedActions(IActionListener& listener);
    void Deliver(const AttachedActions::Action& action, IActionListener& listener);
    void DeliverOwnUnlogged(ActionImpl& action, IActionListener& listener);
    void CallListener(IActionListener& listener, IAction* action);
    WideString LogPrefix();

    PooledStateWord state_;

    Harbor::Lock listenerLock_;  // guards listener_ against the worker's copy
    Harbor::ComponentPtr<IActionListener> listener_;

    // Guards actions_ and the flags Started and Detached. It is held across a listener call. Never taken together with
    // listenerLock_.
    Harbor::HolderLock actionsLock_;
    AttachedActions actions_;

    static inline constinit std::atomic<std::uint64_t> DetachmentCount{0};
};

}  // namespace DataCollection::ActionManagement
