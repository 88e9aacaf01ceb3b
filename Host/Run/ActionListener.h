// The host's listener: a component that passes each call to a function.
#pragma once

#include <functional>

#include "Common/Components/CComponentObject.h"
#include "DataCollection/ActionSubscription.h"

namespace Host {

// Called with the action's name on the module's worker thread.
using CallHandler = std::function<void(const Harbor::WideString& action)>;

class ActionListener : public Harbor::ComponentRoot, public DataCollection::ActionManagement::IActionListener {
public:
    static constexpr const char* Tag = "CComponentObject<class Host::ActionListener>::CComponentObject";
    // A listener's interface has no id, so there is none to query but that of the root.
    using Queryable = Harbor::InterfaceList<Harbor::ComponentRoot>;

    // `handler` must not throw: an exception would end the program.
    [[nodiscard]] static Harbor::ComponentPtr<DataCollection::ActionManagement::IActionListener> Make(
        CallHandler handler);

    Harbor::HRESULT OnActionTriggered(DataCollection::ActionManagement::IActionSubscription* subscription,
                                      DataCollection::IAction* action) noexcept override;

private:
    CallHandler handler_;
};

}  // namespace Host
