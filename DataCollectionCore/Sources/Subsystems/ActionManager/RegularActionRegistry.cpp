#include "Subsystems/ActionManager/RegularActionRegistry.h"

#include "Common/Failures/CodeOfCall.h"
#include "Subsystems/ActionManager/CycleTrace.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

// An action that cannot be asked counts as disposed.
bool IsDisposed(const TimedAction& action) noexcept {
    bool disposed = false;
    const HRESULT code = CodeOfCall([&] { return action.GetAction()->IsDisposed(&disposed); });
    return Failed(code) || disposed;
}

}  // namespace

void RegularActionRegistry::Add(TimedAction action, RegistryProof) {
    ReserveForOneMore(dueFrom_);
    ReserveForOneMore(actions_);
    dueFrom_.push_back(action.DueFrom());
    actions_.push_back(std::move(action));
}

void RegularActionRegistry::EraseDisposed(RegistryProof) noexcept {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < actions_.size(); ++i) {
        if (IsDisposed(actions_[i])) {
            TRY_LOG(Dbg, u"TimedAction '" << actions_[i].GetAction() << u"' is disposed and will be deleted");
            const TimedAction erased = std::move(actions_[i]);
            continue;
        }
        if (kept != i) {
            dueFrom_[kept] = dueFrom_[i];
            actions_[kept] = std::move(actions_[i]);
        }
        ++kept;
    }
    const auto newEnd = static_cast<std::ptrdiff_t>(kept);
    dueFrom_.erase(dueFrom_.begin() + newEnd, dueFrom_.end());
    actions_.erase(actions_.begin() + newEnd, actions_.end());
}

void RegularActionRegistry::MarkDue(const TimePoint& now, RegistryProof) noexcept {
    const bool isLogged = IsStepLogged(LogSeverity::Dbg), isTraced = isLogged && IsCycleTraced();
    for (std::size_t i = 0; i < dueFrom_.size(); ++i) {
        if (!isTraced && now < dueFrom_[i]) continue;
        TimedAction& action = actions_[i];
        if (isTraced && !action.ShouldBeTriggered(now)) continue;
        action.MarkDue(now, isLogged);
        dueFrom_[i] = action.DueFrom();
    }
}

}  // namespace DataCollection::ActionManagement
