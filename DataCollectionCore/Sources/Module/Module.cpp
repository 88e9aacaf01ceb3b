// The module: everything that is built when the library is loaded, from top to bottom, and ends in reverse order when
// it is unloaded. The lazily built singletons (data directory, message modules, hidden attributes) have their holders
// among the constants of their own sources and come at the first use. No log file is opened here.
#include "Common/Base/HRes.h"
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

struct ModuleObjects {
    const LogManager& logManager = LogManager::Instance();  // brings the settings store with its two sources
    const ErrorTextCache& errorTexts = ErrorTextCache::Instance();
    const FileLogger& fileLogger = GetFileLogger(MakeLogFileName(), MakeLogBanner(ModuleDescription, Version));
    const DbgAliveObjectsTracker& aliveObjectsTracker = DbgAliveObjectsTracker::Instance();

    // The first of the registrars brings the module object.
    const ClassRegistrar actionManager{ActionManagerClassId, &CComponentObject<ActionManager>::CreateInstance};
    const ClassRegistrar scopeItemUpdateStrategy{ScopeItemUpdateStrategyClassId,
                                                 &CComponentObject<ScopeItemUpdateStrategy>::CreateInstance};
    const ClassRegistrar defaultTriggerStrategy{DefaultTriggerStrategyClassId,
                                                &CComponentObject<DefaultTriggerStrategy>::CreateInstance};
};

// Builds what does not exist yet. After a failure, the next call continues from there.
HRESULT Build() noexcept {
    try {
        ThrowIfOutOfMemory([] { static const ModuleObjects objects; });
        return S_OK;
    } catch (const HRX& failure) {
        return failure.Code();
    }
}

// An exception would end the process during the load. Instead, after a failure the export tries again and returns the
// code.
[[maybe_unused]] const HRESULT BuiltAtLoad = Build();

}  // namespace

extern "C" PLATFORM_EXPORT HRESULT GetComponentsModuleObject(IComponentsModule** out) {
    if (const HRESULT code = Build(); Failed(code)) return code;
    return ComponentsModule::Instance().QueryInterface(&IComponentsModule::Id, reinterpret_cast<void**>(out));
}
