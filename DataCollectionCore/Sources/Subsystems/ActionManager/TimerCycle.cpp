// The cycle of the worker. A failure of one subscription or action ends neither the cycle nor the worker. The code of a
// call is checked where it matters, an exception of a neighbour becomes a code, and a line that the log cannot write is
// lost. If a step still throws, because memory ran out, it ends early and is repeated in the next cycle.
#include "Common/Failures/CodeOfCall.h"
#include "Common/Logging/FunctionTrace.h"
#include "Subsystems/ActionManager/ActionManager.h"
#include "Subsystems/ActionManager/CycleTrace.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

template <class Step>
void RunStep(Step step) noexcept {
    try {
        step();
    } catch (...) {
        // What the step could not do is still in the registry, the queue or the marks.
    }
}

}  // namespace

void ActionManager::OnTimerEvent(const TimePoint& now) noexcept {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::OnTimerEvent");
    UpdateSubscriptions();
    RunStep([&] { EraseDisposedActions(); });
    RunStep([&] { UpdateRegularActions(now); });
    RunStep([&] { UpdateForcedActions(); });
    TriggerActions();
}

void ActionManager::UpdateSubscriptions() noexcept {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::UpdateSubscriptions");
    const LockGuard guard(registryLock_);
    subscriptions_.Update(guard);
}

void ActionManager::EraseDisposedActions() {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::EraseDisposedActions");
    ForcedActionRegistry::Removed removed;  // released after the lock
    const LockGuard guard(registryLock_);
    const std::uint64_t disposals = ActionImpl::Disposals();
    if (disposals == disposalsAtLastErase_ && !IsCycleTraced()) return;
    regularActions_.EraseDisposed(guard);
    forcedSubscriptions_.EraseDisposed(removed, guard);
    disposalsAtLastErase_ = disposals;
}

void ActionManager::UpdateRegularActions(const TimePoint& now) {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::UpdateRegularActions");
    const LockGuard guard(registryLock_);
    regularActions_.MarkDue(now, guard);
}

void ActionManager::TriggerActions() noexcept {
    bool isTraced = IsCycleTraced();
    subscriptions_.ForEachLiving([&](const StateWord& state, IActionSubscriptionControl& subscription) {
        if (!isTraced && !NeedsTriggering(state.load(std::memory_order_acquire))) return;
        const HRES code = HRES::Unchecked(CodeOfCall([&] { return subscription.TriggerActionsIfNeeded(); }));
        if (code.Failed()) {
            TRY_LOG(Err, u"Error when trying to trigger action for subscription '" << &subscription << u"':" << code);
        }
        isTraced = IsCycleTraced();
    });
}

}  // namespace DataCollection::ActionManagement
