// The pair of actions of one command point.
#pragma once

#include "DataCollection/Action.h"
#include "Harbor/ComponentPtr.h"

namespace DataCollection::ActionManagement {

class ForcedActions {
public:
    // Creates both actions. Failures are thrown as HRX.
    ForcedActions();
    ForcedActions(const ForcedActions&) = delete;
    ForcedActions& operator=(const ForcedActions&) = delete;

    // True once neither action has a subscription. An action that doesn't tell counts as disposed.
    bool IsDisposed() const noexcept;

    const Harbor::ComponentPtr<IActionControl>& StartAction() const noexcept { return startAction_; }
    const Harbor::ComponentPtr<IActionControl>& StopAction() const noexcept { return stopAction_; }

private:
    Harbor::ComponentPtr<IActionControl> startAction_;
    Harbor::ComponentPtr<IActionControl> stopAction_;
};

}  // namespace DataCollection::ActionManagement
