// The binding of actions to one listener.
#pragma once

#include "DataCollection/Action.h"

namespace DataCollection::ActionManagement {

// The client's view. Any thread may call it, a listener too, but for Start on its own subscription.
struct IActionSubscription : Harbor::IComponentUnknown {
    static constexpr GUID Id{0x9D99BD2E, 0x4CE8, 0x4842, {0xAB, 0x52, 0xF5, 0x58, 0xD8, 0xBA, 0x1C, 0x09}};

    // From now on the listener is called. What fell due before is delivered as one call. E_FAIL once the subscription
    // has detached. Waits for a delivery that is under way.
    virtual HRESULT Start() = 0;
    // Ends the binding. Doesn't wait: a call that is under way goes on, and one more may just be beginning.
    virtual HRESULT Unsubscribe() = 0;
};

// Implemented by the client.
struct IActionListener : Harbor::IComponentUnknown {
    // Called on the manager's worker thread, which waits for it. Both pointers are valid for the call; keep one by a
    // reference of your own. The result isn't read. May subscribe and unsubscribe; must not start its own
    // subscription and must not release the manager's last reference. An HRX that leaves it has it called again in
    // the next cycle; other exceptions must not leave it.
    virtual HRESULT OnActionTriggered(IActionSubscription* subscription, IAction* action) = 0;
};

// The module's view.
struct IActionSubscriptionControl : Harbor::IComponentUnknown {
    static constexpr GUID Id{0xBB0A24E7, 0x046F, 0x4C73, {0xAB, 0xBD, 0xEF, 0xF7, 0x8E, 0xC8, 0x0D, 0x79}};

    virtual HRESULT SetListener(IActionListener* listener) = 0;
    virtual HRESULT SetAction(IActionControl* action) = 0;
    virtual HRESULT IsAlive(bool* alive) = 0;
    virtual HRESULT TriggerActionsIfNeeded() = 0;
};

}  // namespace DataCollection::ActionManagement
