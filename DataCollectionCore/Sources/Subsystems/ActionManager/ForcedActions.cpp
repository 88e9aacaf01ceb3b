#include "Subsystems/ActionManager/ForcedActions.h"

#include "Common/Failures/CodeOfCall.h"
#include "Common/Logging/FunctionTrace.h"
#include "Subsystems/ActionManager/ActionImpl.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

constexpr WideChar StartName[] = u"ForcedStart";
constexpr WideChar StopName[] = u"ForcedStop";

HRES AskDisposed(const ComponentPtr<IActionControl>& action, bool& disposed) {
    return HRES::Unchecked(CodeOfCall([&] { return action->IsDisposed(&disposed); }));
}

}  // namespace

ForcedActions::ForcedActions() {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ForcedActions::ForcedActions");
    startAction_ = Create<ActionImpl, IActionControl>();
    ThrowIfFailed(startAction_->SetNameAndType(StartName, ForcedStartActionType));
    LOG(Dbg, u"Forced start action created: '" << startAction_.Get() << u"'.");
    stopAction_ = Create<ActionImpl, IActionControl>();
    ThrowIfFailed(stopAction_->SetNameAndType(StopName, ForcedStopActionType));
    LOG(Dbg, u"Forced stop action created: '" << stopAction_.Get() << u"'.");
}

bool ForcedActions::IsDisposed() const noexcept {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ForcedActions::IsDisposed");
    bool startDisposed = true;
    bool stopDisposed = true;
    if (const HRES code = AskDisposed(startAction_, startDisposed); code.Failed()) {
        TRY_LOG(Err, u"Could not get disposed status for start action. Reason: " << code);
    }
    if (const HRES code = AskDisposed(stopAction_, stopDisposed); code.Failed()) {
        TRY_LOG(Err, u"Could not get disposed status for stop action. Reason: " << code);
    }
    return startDisposed && stopDisposed;
}

}  // namespace DataCollection::ActionManagement
