#include "Subsystems/ActionManager/GlobalSettings.h"

#include <atomic>

#include "Common/Base/Guards.h"
#include "Common/Logging/FunctionTrace.h"
#include "DataCollection/ActionManager.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

ReaderWriterLock SettingsLock;
std::atomic<bool> Created{false};
std::shared_ptr<GlobalSettings> Singleton;

}  // namespace

const std::shared_ptr<GlobalSettings>& GlobalSettings::Instance() {
    if (Created.load()) return Singleton;
    const ExclusiveGuard guard(SettingsLock);
    if (!Created.load()) {
        Singleton = std::make_shared<GlobalSettings>();
        Created.store(true);
    }
    return Singleton;
}

void GlobalSettings::Load(const ACNode& node) {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::GlobalSettings::Load");
    const ExclusiveGuard guard(SettingsLock);
    pollingIntervalInMilliseconds_ = node.GetUInt32(PollingIntervalAttribute);
}

std::uint32_t GlobalSettings::PollingIntervalInMilliseconds() const noexcept {
    TRY_TRACE_FUNCTION(Dbg3, u"DataCollection::ActionManagement::GlobalSettings::PollingIntervalInMilliseconds");
    const SharedGuard guard(SettingsLock);
    return pollingIntervalInMilliseconds_;
}

}  // namespace DataCollection::ActionManagement
