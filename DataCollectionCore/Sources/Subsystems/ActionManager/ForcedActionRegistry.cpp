#include "Subsystems/ActionManager/ForcedActionRegistry.h"

#include "Common/Failures/CodeOfCall.h"
#include "Common/Logging/Log.h"
#include "Subsystems/ActionManager/ConfigServiceLookup.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

// A watch that cannot be removed is logged and given up. `service` receives the service, which the caller releases.
void RemoveWatch(const ForcedEntry& entry, ComponentPtr<IACConfigService>& service) noexcept {
    const ForcedActions& actions = *entry.actions;
    try {
        service = GetConfigService();
        const HRES code =
            HRES::Unchecked(CodeOfCall([&] { return service->RemoveSubscription(entry.subscription.Get()); }));
        if (code.Failed()) {
            LOG(Err, u"query->RemoveSubscription(it->first)" << u"\tcall failed. " << code << u"; ");
            code.ThrowIfFailed();
        }
    } catch (const HRX& failure) {
        TRY_LOG(Warn, u"Cannot remove subscription: Forced Actions: StartAction '"
                          << actions.StartAction().Get() << u"', StopAction '" << actions.StopAction().Get()
                          << u"'; error: " << failure);
    }
}

}  // namespace

void ForcedActionRegistry::Add(const ForcedEntry& entry, RegistryProof) {
    entries_.emplace(entry.subscription.Get(), entry);
}

void ForcedActionRegistry::EraseDisposed(Removed& removed, RegistryProof) {
    for (auto entry = entries_.begin(); entry != entries_.end();) {
        const ForcedActions& actions = *entry->second.actions;
        if (!actions.IsDisposed()) {
            ++entry;
            continue;
        }
        Removed::Pair& pair = removed.pairs_.emplace_back();
        TRY_LOG(Dbg, u"Forced Actions: StartAction '" << actions.StartAction().Get() << u"', StopAction '"
                                                      << actions.StopAction().Get()
                                                      << u"' is disposed and will be deleted");
        RemoveWatch(entry->second, pair.service);
        pair.entry = std::move(entry->second);
        entry = entries_.erase(entry);
    }
}

const ForcedActions* ForcedActionRegistry::Find(const QueuedUpdate& update, RegistryProof) const noexcept {
    const auto entry = entries_.find(update.key);
    if (entry == entries_.end() || update.registrationsBefore < entry->second.number) return nullptr;
    return entry->second.actions.get();
}

}  // namespace DataCollection::ActionManagement
