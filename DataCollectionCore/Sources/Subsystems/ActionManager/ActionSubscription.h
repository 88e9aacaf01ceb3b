// The binding of actions to one listener, and the only place where a listener is called.
#pragma once

#include <vector>

#include "Common/Base/Guards.h"
#include "Common/Components/CComponentObject.h"
#include "DataCollection/ActionSubscription.h"

namespace DataCollection::ActionManagement {

class ActionSubscription : public Harbor::ComponentRoot, public IActionSubscription, public IActionSubscriptionControl {
public:
    static constexpr const char* Tag =
        "CComponentObject<class DataCollection::ActionManagement::ActionSubscription>::CComponentObject";
    using Queryable = Harbor::InterfaceList<IActionSubscription, IActionSubscriptionControl>;

    ~ActionSubscription() override;

    HRESULT Start() override;
    HRESULT Unsubscribe() override;

    // Takes no lock: only for the time before the subscription is published.
    HRESULT SetListener(IActionListener* listener) override;
    HRESULT SetAction(IActionControl* action) override;
    // Never waits: a subscription whose lock is busy counts as alive.
    HRESULT IsAlive(bool* alive) override;
    // Calls the listener for each marked action and clears the mark. Detaches once Unsubscribe was called.
    HRESULT TriggerActionsIfNeeded() override;

private:
    void UnsubscribeInternal(const std::unique_lock<Harbor::CriticalSection>& lock);
    void DeliverMarkedActions(IActionListener& listener);
    void Deliver(const Harbor::ComponentPtr<IActionControl>& action, IActionListener& listener);
    WideString LogPrefix();

    Harbor::Lock listenerLock_;  // guards listener_ against the worker's copy
    Harbor::ComponentPtr<IActionListener> listener_;

    std::atomic<bool> unsubscribeRequested_{false};  // never goes back to false

    // Guards all below, and is held across a listener call, from inside which IsAlive may be asked: hence recursive.
    // Never taken together with listenerLock_.
    Harbor::CriticalSection actionsLock_;
    std::vector<Harbor::ComponentPtr<IActionControl>> actions_;
    bool alive_ = true;     // UnsubscribeInternal has not run yet
    bool started_ = false;  // Start was called while alive
};

}  // namespace DataCollection::ActionManagement
