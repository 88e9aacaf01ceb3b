// The module: everything that is built when the library is loaded, from top to bottom, and ends in reverse order when
// it is unloaded. The lazily built singletons (data directory, message modules, hidden attributes) have their holders
// among the constants of their own sources and come at the first use. No log file is opened here.
#include "Common/Components/CComponentObject.h"
#include "Common/Failures/ErrorTextCache.h"
#include "Common/Logging/FileLogger.h"
#include "DataCollection/Version.h"
#include "Subsystems/ActionManager/ActionManager.h"
#include "Subsystems/ActionManager/DefaultTriggerStrategy.h"
#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"

namespace {

using namespace Harbor;
using namespace DataCollection;
using ActionManagement::ActionManager;
using ActionManagement::ActionManagerClassId;

constexpr WideChar ModuleDescription[] = u"OrvActionManager64";
constexpr ModuleVersion Version{ORV_ACTION_MANAGER_VERSION_MAJOR, ORV_ACTION_MANAGER_VERSION_MINOR,
                                ORV_ACTION_MANAGER_VERSION_PATCH, ORV_ACTION_MANAGER_VERSION_BUILD};

// The log manager brings the settings store with its two sources.
[[maybe_unused]] const LogManager& TheLogManager = LogManager::Instance();
[[maybe_unused]] const ErrorTextCache& TheErrorTexts = ErrorTextCache::Instance();
[[maybe_unused]] const FileLogger& TheFileLogger =
    GetFileLogger(MakeLogFileName(), MakeLogBanner(ModuleDescription, Version));
[[maybe_unused]] const DbgAliveObjectsTracker& TheAliveObjectsTracker = DbgAliveObjectsTracker::Instance();

// The first of the registrars brings the module object.
const ClassRegistrar ActionManagerClass(ActionManagerClassId, &CComponentObject<ActionManager>::CreateInstance);
const ClassRegistrar ScopeItemUpdateStrategyClass(ScopeItemUpdateStrategyClassId,
                                                  &CComponentObject<ScopeItemUpdateStrategy>::CreateInstance);
const ClassRegistrar DefaultTriggerStrategyClass(DefaultTriggerStrategyClassId,
                                                 &CComponentObject<DefaultTriggerStrategy>::CreateInstance);

}  // namespace

extern "C" PLATFORM_EXPORT HRESULT GetComponentsModuleObject(IComponentsModule** out) {
    return ComponentsModule::Instance().QueryInterface(&IComponentsModule::Id, reinterpret_cast<void**>(out));
}
