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
    return stream.Text();
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
        if (IsRefusedInsideOwnCall(u"SetAction")) return E_UNEXPECTED;
        const std::lock_guard guard(actionsLock_);
        actions_.ReserveForOneMore();
        ThrowIfFailed(action->OnSubscriptionAttached());
        actions_.Add(action);
        state_.Set(SubscriptionState::MustPoll);
        LOG(Dbg, LogPrefix() << u"'. Attached action '" << action << u"'");
        return S_OK;
    });
}

void ActionSubscription::LetReportMarks(const std::vector<ActionImpl*>& actions) {
    for (ActionImpl* const action : actions) action->ReportMarksTo(state_.Get());
    // A mark may have been set before.
    state_.Set(SubscriptionState::Marked);
    state_.Clear(SubscriptionState::MustPoll);
}

// It cannot fail: the cycle would drop a subscription whose state it cannot ask for.
HRESULT ActionSubscription::IsAlive(bool* alive) {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionSubscription::IsAlive");
    *alive = true;
    if (actionsLock_.IsHeldByThisThread()) return S_OK;
    const std::unique_lock lock(actionsLock_, std::try_to_lock);
    if (lock.owns_lock()) *alive = !state_.Has(SubscriptionState::Detached);
    return S_OK;
}

HRESULT ActionSubscription::TriggerActionsIfNeeded() {
    return MethodEdge(
        TRACED_METHOD(Dbg2, "DataCollection::ActionManagement::ActionSubscription::TriggerActionsIfNeeded"), [&] {
            if (IsRefusedInsideOwnCall(u"TriggerActionsIfNeeded")) return E_UNEXPECTED;
            // The copy keeps the listener alive through the calls even if Unsubscribe releases it meanwhile.
            const ComponentPtr<IActionListener> listener = [this] {
                const LockGuard guard(listenerLock_);
                return listener_;
            }();
            const std::unique_lock lock(actionsLock_);
            const bool isStarted = state_.Has(SubscriptionState::Started);
            const bool isAlive = !state_.Has(SubscriptionState::Detached);
            if (isAlive && isStarted && listener) DeliverMarkedActions(*listener.Get());
            if (state_.Has(SubscriptionState::UnsubscribeRequested)) UnsubscribeInternal(lock);
            return S_OK;
        });
}

bool ActionSubscription::IsRefusedInsideOwnCall(const WideChar* operation) {
    if (!actionsLock_.IsHeldByThisThread()) return false;
    LOG(Err, LogPrefix() << u"'. " << operation << u" is refused inside a call of this subscription.");
    return true;
}

void ActionSubscription::DeliverMarkedActions(IActionListener& listener) {
    // Before the marks are read: one that is set meanwhile shows in the word again.
    state_.Clear(SubscriptionState::Marked);
    const bool areOwn = !state_.Has(SubscriptionState::MustPoll);  // then all actions are those of LetReportMarks
    try {
        for (std::size_t i = 0; i < actions_.Size() && !state_.Has(SubscriptionState::UnsubscribeRequested); ++i) {
            const AttachedActions::Action& action = actions_[i];
            // One test of the severity for all lines before the call.
            if (areOwn && !IsLogEnabled(LogSeverity::Dbg)) {
                DeliverOwnUnlogged(static_cast<ActionImpl&>(*action.Get()), listener);
                continue;
            }
            bool triggered = false;
            action->GetTriggered(&triggered);
            if (triggered) Deliver(action, listener);
        }
    } catch (...) {
        state_.Set(SubscriptionState::Marked);  // what was not delivered is tried again in the next cycle
        throw;
    }
}

void ActionSubscription::Deliver(const AttachedActions::Action& action, IActionListener& listener) {
    LOG(Dbg, LogPrefix() << u"'. Attached action '" << action.Get() << u"' becomes triggered.");
    const auto view = QueryOrThrow<IAction>(action);
    CallListener(listener, view.Get());
    action->SetTriggered(false);
}

void ActionSubscription::DeliverOwnUnlogged(ActionImpl& action, IActionListener& listener) {
    if (!action.IsMarked()) return;
    CallListener(listener, &action);
    action.SetTriggered(false);  // with its trace, since the log may have been turned on during the call
}

void ActionSubscription::CallListener(IActionListener& listener, IAction* action) {
    if (Failed(listener.OnActionTriggered(this, action))) {
        // Nobody reads the code. Its words must not be taken for those of the next failure on this thread.
        Platform::SetErrorInfo(0, nullptr);
    }
}

HRESULT ActionSubscription::Start() {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionManagement::ActionSubscription::Start"), [&] {
        if (IsRefusedInsideOwnCall(u"Start")) return E_UNEXPECTED;
        const std::lock_guard guard(actionsLock_);
        LOG(Dbg, LogPrefix() << u"'. starting.");
        if (!state_.Has(SubscriptionState::Detached)) {
            state_.Set(SubscriptionState::Started);
            return S_OK;
        }
        LOG(Err, u"Subscription started, but subscriber has not subscribed");
        return E_FAIL;
    });
}

// An end cannot fail: what it cannot log is lost.
HRESULT ActionSubscription::Unsubscribe() {
    // The end of the listener may release the last reference of others to this subscription.
    const ComponentPtr<IActionSubscription> self(this);
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionSubscription::Unsubscribe");
    // The listener is released outside the lock: its end may call this subscription.
    ComponentPtr<IActionListener> released;
    {
        const LockGuard guard(listenerLock_);
        released = std::move(listener_);
    }
    released.Reset();
    TRY_LOG(Dbg, LogPrefix() << u"'. will be unsubscribed.");
    state_.Set(SubscriptionState::UnsubscribeRequested);
    return S_OK;
}

void ActionSubscription::UnsubscribeInternal(const std::unique_lock<HolderLock>& lock) {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionSubscription::UnsubscribeInternal");
    if (!lock.owns_lock() || lock.mutex() != &actionsLock_) ThrowError(E_INVALIDARG);
    LOG(Dbg, LogPrefix() << u"'. unsubscribed.");
    // From here on everything is done: a subscription that is dead but still attached would keep its actions for ever.
    state_.Set(SubscriptionState::Detached);
    ++DetachmentCount;
    for (std::size_t i = 0; i < actions_.Size(); ++i) {
        TRY_LOG(Dbg2, u"Action '" << actions_[i].Get() << u"' OnSubscriptionDisposed");
        actions_[i]->OnSubscriptionDisposed();
    }
    actions_.Clear();
}

}  // namespace DataCollection::ActionManagement
