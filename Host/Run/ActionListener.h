// The host's listener: a component that hands each call on.
#pragma once

#include <functional>

#include "Common/Components/CComponentObject.h"
#include "DataCollection/ActionSubscription.h"

namespace Host {

// Gets the action's name, on the module's worker thread.
using CallHandler = std::function<void(const Harbor::WideString& action)>;

class ActionListener : public Harbor::ComponentRoot, public DataCollection::ActionManagement::IActionListener {
public:
    static constexpr const char* Tag = "CComponentObject<class Host::ActionListener>::CComponentObject";
    // A listener's interface has no id, so that the identity is all there is to ask for.
    using Queryable = Harbor::InterfaceList<Harbor::ComponentRoot>;

    // What `handler` throws ends the program: the worker that calls it has nobody to tell.
    [[nodiscard]] static Harbor::ComponentPtr<DataCollection::ActionManagement::IActionListener> Make(
        CallHandler handler);

    Harbor::HRESULT OnActionTriggered(DataCollection::ActionManagement::IActionSubscription* subscription,
                                      DataCollection::IAction* action) noexcept override;

private:
    CallHandler handler_;
};

}  // namespace Host
