#include "Subsystems/ActionManager/ActionSubscription.h"

#include "Common/Failures/MethodEdge.h"
#include "Platform/ErrorObjects.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

// The beginning of most lines: this subscription by its two views.
WideString ActionSubscription::LogPrefix() {
    WideStream stream;
    stream << u"Subscription '" << static_cast<IActionSubscription*>(this) << u"' Subscription ID '"
           << static_cast<IActionSubscriptionControl*>(this);
    return std::move(stream).Text();
}

ActionSubscription::~ActionSubscription() {
    TRY_LOG(Dbg, LogPrefix() << u"' is deleted.");
}

HRESULT ActionSubscription::SetListener(IActionListener* listener) {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionManagement::ActionSubscription::SetListener"), [&] {
        if (listener == nullptr) ThrowError(E_POINTER);
        listener_.Reset(listener);
        return S_OK;
    });
}

HRESULT ActionSubscription::SetAction(IActionControl* action) {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionManagement::ActionSubscription::SetAction"), [&] {
        if (action == nullptr) ThrowError(E_POINTER);
        const CriticalSectionGuard guard(actionsLock_);
        actions_.reserve(actions_.size() + 1);
        ThrowIfFailed(action->OnSubscriptionAttached());
        actions_.emplace_back(action);
        LOG(Dbg, LogPrefix() << u"'. Attached action '" << action << u"'");
        return S_OK;
    });
}

// Can't fail: the cycle would drop a subscription that doesn't tell.
HRESULT ActionSubscription::IsAlive(bool* alive) {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionSubscription::IsAlive");
    const std::unique_lock lock(actionsLock_, std::try_to_lock);
    *alive = !lock.owns_lock() || alive_;
    return S_OK;
}

HRESULT ActionSubscription::TriggerActionsIfNeeded() {
    return MethodEdge(
        TRACED_METHOD(Dbg2, "DataCollection::ActionManagement::ActionSubscription::TriggerActionsIfNeeded"), [&] {
            // The copy keeps the listener alive through the calls even if Unsubscribe lets it go meanwhile.
            const ComponentPtr<IActionListener> listener = [this] {
                const LockGuard guard(listenerLock_);
                return listener_;
            }();
            const std::unique_lock lock(actionsLock_);
            if (alive_ && started_ && listener) DeliverMarkedActions(*listener.Get());
            if (unsubscribeRequested_.load()) UnsubscribeInternal(lock);
            return S_OK;
        });
}

void ActionSubscription::DeliverMarkedActions(IActionListener& listener) {
    for (const auto& action : actions_) {
        if (unsubscribeRequested_.load()) break;
        bool triggered = false;
        action->GetTriggered(&triggered);
        if (triggered) Deliver(action, listener);
    }
}

void ActionSubscription::Deliver(const ComponentPtr<IActionControl>& action, IActionListener& listener) {
    LOG(Dbg, LogPrefix() << u"'. Attached action '" << action.Get() << u"' becomes triggered.");
    const auto view = QueryOrThrow<IAction>(action);
    if (Failed(listener.OnActionTriggered(this, view.Get()))) {
        // Nobody reads the code. Its words must not be taken for those of the next failure on this thread.
        Platform::SetErrorInfo(0, nullptr);
    }
    action->SetTriggered(false);
}

HRESULT ActionSubscription::Start() {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionManagement::ActionSubscription::Start"), [&] {
        const CriticalSectionGuard guard(actionsLock_);
        LOG(Dbg, LogPrefix() << u"'. starting.");
        if (alive_) {
            started_ = true;
            return S_OK;
        }
        LOG(Err, u"Subscription started, but subscriber has not subscribed");
        return E_FAIL;
    });
}

// An end, which can't fail: what it can't log is lost.
HRESULT ActionSubscription::Unsubscribe() {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionSubscription::Unsubscribe");
    // The listener is let go outside the lock: its end may come back to this subscription.
    ComponentPtr<IActionListener> dropped;
    {
        const LockGuard guard(listenerLock_);
        dropped = std::move(listener_);
    }
    dropped.Reset();
    TRY_LOG(Dbg, LogPrefix() << u"'. will be unsubscribed.");
    unsubscribeRequested_.store(true);
    return S_OK;
}

void ActionSubscription::UnsubscribeInternal(const std::unique_lock<CriticalSection>& lock) {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionSubscription::UnsubscribeInternal");
    if (!lock.owns_lock() || lock.mutex() != &actionsLock_) ThrowError(E_INVALIDARG);
    LOG(Dbg, LogPrefix() << u"'. unsubscribed.");
    // From here on to the end: a subscription that is dead but still attached would keep its actions for ever.
    alive_ = false;
    for (const auto& action : actions_) {
        TRY_LOG(Dbg2, u"Action '" << action.Get() << u"' OnSubscriptionDisposed");
        action->OnSubscriptionDisposed();
    }
    actions_.clear();
}

}  // namespace DataCollection::ActionManagement
