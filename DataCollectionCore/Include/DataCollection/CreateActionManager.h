// Creates a manager that is ready to call listeners.
#pragma once

#include "DataCollection/ActionManager.h"
#include "Harbor/Configurable.h"
#include "Harbor/Module.h"
#include "Harbor/Nodes.h"

namespace DataCollection::ActionManagement {

// Creates a manager and configures it, which starts its worker thread. The worker determines every
// `pollingMilliseconds` what is due; the value applies to all managers of the module that are configured from now on.
// 0 means without a pause, which occupies a processor. Failures are thrown as Harbor::Failure, and no manager is left
// then.
[[nodiscard]] inline Harbor::ComponentPtr<IActionManager> CreateActionManager(Harbor::IComponentsModule& module,
                                                                              std::uint32_t pollingMilliseconds) {
    const Harbor::NodeHandle node = Harbor::NewNode(u"ActionManager");
    Harbor::SetUInt32(node.get(), PollingIntervalAttribute, pollingMilliseconds);
    auto manager = Harbor::Create<IActionManager>(module, ActionManagerClassId);
    Harbor::ComponentPtr<Harbor::IConfigurable> configurable;
    Harbor::ThrowIfFailed(manager.QueryTo(configurable), "QueryInterface");
    Harbor::ThrowIfFailed(configurable->Configure(node.get()), "Configure");
    return manager;
}

}  // namespace DataCollection::ActionManagement
