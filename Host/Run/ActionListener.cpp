#include "Host/Run/ActionListener.h"

#include "Harbor/Failure.h"

namespace Host {

using namespace DataCollection;
using namespace DataCollection::ActionManagement;
using namespace Harbor;

ComponentPtr<IActionListener> ActionListener::Make(CallHandler handler) {
    CComponentObject<ActionListener>* created = nullptr;
    ThrowIfFailed(CComponentObject<ActionListener>::CreateObject(&created), "Create listener");
    created->handler_ = std::move(handler);
    return ComponentPtr<IActionListener>::Attach(created);
}

HRESULT ActionListener::OnActionTriggered(IActionSubscription*, IAction* action) noexcept {
    WideString name;
    const HRESULT code = action->GetName(&name);
    handler_(name);
    return code;
}

}  // namespace Host
