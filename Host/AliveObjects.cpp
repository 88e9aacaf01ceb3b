#include "Host/AliveObjects.h"

#include "Common/Components/ComponentsModule.h"
#include "Host/Failure.h"
#include "NodeFabric/Authoring.h"

namespace Host {

std::uint32_t CountObjects(Harbor::IComponentsModule& module) {
    // The module tells its count only to those who change it.
    module.LockModule();
    return module.UnlockModule();
}

AliveObjects CountAlive(Harbor::IComponentsModule& module) {
    AliveObjects alive{CountObjects(module), CountObjects(Harbor::ComponentsModule::Instance())};
    Check(AcnGetOpenHandleCount(&alive.nodeHandles), "Count node handles");
    return alive;
}

}  // namespace Host
