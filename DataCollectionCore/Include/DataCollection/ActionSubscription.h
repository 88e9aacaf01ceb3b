// A subscription connects one listener with its actions.
#pragma once

#include "DataCollection/Action.h"

namespace DataCollection::ActionManagement {

// A subscription, as its client uses it. Any thread may call it, also from inside a call to a listener.
struct IActionSubscription : Harbor::IComponentUnknown {
    static constexpr GUID Id{0x9D99BD2E, 0x4CE8, 0x4842, {0xAB, 0x52, 0xF5, 0x58, 0xD8, 0xBA, 0x1C, 0x09}};

    // Allows calls to the listener. What became due before is delivered as one call. Waits for a call to this
    // subscription's listener that is under way on another thread. Returns E_FAIL if the subscription has detached
    // after Unsubscribe. From inside a call to its own listener it returns E_UNEXPECTED, logs an ERR line and changes
    // nothing.
    virtual HRESULT Start() = 0;
    // Ends the subscription and releases the listener; if a call to the listener is under way, the listener is released
    // after that call. Does not wait: a call that is under way continues, and one more call may be starting. Returns
    // S_OK.
    virtual HRESULT Unsubscribe() = 0;

protected:
    ~IActionSubscription() = default;
};

// Implemented by the client.
struct IActionListener : Harbor::IComponentUnknown {
    // Called on the manager's worker thread, which waits until it returns. Both arguments are valid during the call;
    // add a reference to keep one. The returned code is ignored.
    //
    // Inside the call the listener may subscribe, and may unsubscribe itself and others. Start of its own subscription
    // is refused with E_UNEXPECTED. The call must not release the manager's last reference, and the listener object
    // must not hold that reference: the worker would wait for itself.
    //
    // No exception may leave the call. If one does, it is logged, and the listener is called again in the next cycle.
    virtual HRESULT OnActionTriggered(IActionSubscription* subscription, IAction* action) = 0;

protected:
    ~IActionListener() = default;
};

// A subscription, as the manager uses it.
struct IActionSubscriptionControl : Harbor::IComponentUnknown {
    static constexpr GUID Id{0xBB0A24E7, 0x046F, 0x4C73, {0xAB, 0xBD, 0xEF, 0xF7, 0x8E, 0xC8, 0x0D, 0x79}};

    // Counts a reference to the listener. Returns E_POINTER for null. May be called only before other threads use the
    // subscription.
    virtual HRESULT SetListener(IActionListener* listener) = 0;
    // Attaches an action and counts a reference to it. Returns E_POINTER for null.
    virtual HRESULT SetAction(IActionControl* action) = 0;
    // Stores false if the subscription has detached, otherwise true. Never waits: while another operation of the
    // subscription or a call to its listener is under way, it stores true, also from inside that call. Returns S_OK.
    virtual HRESULT IsAlive(bool* alive) = 0;
    // If the subscription is started, calls the listener for each marked action and clears the mark. After Unsubscribe
    // it only detaches the subscription from its actions. If Unsubscribe is called during the calls, it detaches after
    // the call under way.
    //
    // SetAction and TriggerActionsIfNeeded wait for a call to the listener that is under way on another thread. From
    // inside a call to the listener they return E_UNEXPECTED, log an ERR line and change nothing.
    virtual HRESULT TriggerActionsIfNeeded() = 0;

protected:
    ~IActionSubscriptionControl() = default;
};

}  // namespace DataCollection::ActionManagement
