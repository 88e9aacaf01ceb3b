// The cycle of the worker. Nothing that goes wrong with one subscription or action ends the cycle or the worker: codes
// are looked at where they count, exceptions of a neighbour become codes, what the log can't write is lost, and a step
// that an exception leaves all the same (memory that ran out) ends early and is served again in the next cycle.
#include "Common/Failures/CodeOfCall.h"
#include "Common/Logging/FunctionTrace.h"
#include "Subsystems/ActionManager/ActionManager.h"
#include "Subsystems/ActionManager/ConfigServiceLookup.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

// Drops each entry that `keep` refuses before it looks at the next; the others move up in their order. `keep` throws
// nothing.
template <class Entry, class Keep>
void RetainInOrder(std::vector<Entry>& entries, Keep keep) noexcept {
    auto kept = entries.begin();
    for (Entry& entry : entries) {
        if (!keep(entry)) {
            entry = Entry();
        } else {
            if (&*kept != &entry) *kept = std::move(entry);
            ++kept;
        }
    }
    entries.erase(kept, entries.end());
}

template <class Step>
void RunStep(Step step) noexcept {
    try {
        step();
    } catch (...) {
        // What the step could not do stays in the registry, the queue or the marks.
    }
}

}  // namespace

void ActionManager::OnTimerEvent(const TimePoint& now) noexcept {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::OnTimerEvent");
    Snapshot snapshot = UpdateSubscriptions();
    RunStep([&] { EraseDisposedActions(); });
    RunStep([&] { UpdateRegularActions(now); });
    RunStep([&] { UpdateForcedActions(); });
    TriggerActions(snapshot);
    GiveBack(std::move(snapshot));
}

ActionManager::Snapshot ActionManager::UpdateSubscriptions() noexcept {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::UpdateSubscriptions");
    const LockGuard guard(registryLock_);
    Snapshot snapshot = std::exchange(snapshotRoom_, {});
    RetainInOrder(subscriptions_, [&](const ComponentPtr<IActionSubscriptionControl>& subscription) {
        bool alive = false;
        const HRES code = HRES::Unchecked(CodeOfCall([&] { return subscription->IsAlive(&alive); }));
        if (code.Failed()) TRY_LOG(Err, u"Cannot check IsAlive: " << code);
        if (!alive) {
            TRY_LOG(Dbg, u"Subscription ID:'" << subscription.Get() << u"' deleting...");
            return false;
        }
        snapshot.push_back(subscription.Get());  // the room was reserved at registration
        return true;
    });
    return snapshot;
}

void ActionManager::EraseDisposedActions() {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::EraseDisposedActions");
    const LockGuard guard(registryLock_);
    RetainInOrder(regularActions_, [this](const std::shared_ptr<TimedAction>& action) {
        if (!IsDisposed(*action)) return true;
        TRY_LOG(Dbg, u"TimedAction '" << action->GetAction() << u"' is disposed and will be deleted");
        return false;
    });
    for (auto entry = forcedSubscriptions_.begin(); entry != forcedSubscriptions_.end();) {
        const ForcedActions& actions = *entry->second.actions;
        if (!actions.IsDisposed()) {
            ++entry;
            continue;
        }
        TRY_LOG(Dbg, u"Forced Actions: StartAction '" << actions.StartAction().Get() << u"', StopAction '"
                                                      << actions.StopAction().Get()
                                                      << u"' is disposed and will be deleted");
        endedWatches_.push_back(entry->second.subscription);
        RemoveForcedSubscription(entry->first, actions);
        entry = forcedSubscriptions_.erase(entry);
    }
}

// An action that doesn't tell counts as disposed.
bool ActionManager::IsDisposed(const TimedAction& action) const {
    bool disposed = false;
    const HRESULT code = CodeOfCall([&] { return action.GetAction()->IsDisposed(&disposed); });
    return Failed(code) || disposed;
}

void ActionManager::RemoveForcedSubscription(IACModifySubscription* key, const ForcedActions& actions) {
    try {
        const ComponentPtr<IACConfigService> service = GetConfigService();
        const HRES code = HRES::Unchecked(CodeOfCall([&] { return service->RemoveSubscription(key); }));
        if (code.Failed()) {
            LOG(Err, u"query->RemoveSubscription(it->first)" << u"\tcall failed. " << code << u"; ");
            code.ThrowIfFailed();
        }
    } catch (const HRX& failure) {
        TRY_LOG(Warn, u"Cannot remove subscription: Forced Actions: StartAction '"
                          << actions.StartAction().Get() << u"', StopAction '" << actions.StopAction().Get()
                          << u"'; error: " << failure);
    }
}

void ActionManager::UpdateRegularActions(const TimePoint& now) {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::UpdateRegularActions");
    const LockGuard guard(registryLock_);
    for (const auto& action : regularActions_) {
        if (!action->ShouldBeTriggered(now)) continue;
        action->SetTriggeredTime(now);
        action->GetAction()->SetTriggered(true);
    }
}

void ActionManager::TriggerActions(const Snapshot& snapshot) noexcept {
    for (IActionSubscriptionControl* const subscription : snapshot) {
        const HRES code = HRES::Unchecked(CodeOfCall([&] { return subscription->TriggerActionsIfNeeded(); }));
        if (code.Succeeded()) continue;
        TRY_LOG(Err, u"Error when trying to trigger action for subscription '" << subscription << u"':" << code);
    }
}

// The memory of the snapshot serves the next cycle, unless a registration has reserved more meanwhile.
void ActionManager::GiveBack(Snapshot snapshot) noexcept {
    snapshot.clear();
    const LockGuard guard(registryLock_);
    if (snapshot.capacity() > snapshotRoom_.capacity()) snapshotRoom_ = std::move(snapshot);
}

}  // namespace DataCollection::ActionManagement
