// Commands of the configuration service: the watch of a command point, and the road of a command to its actions.
#include "Common/Failures/CodeOfCall.h"
#include "Common/Failures/MethodEdge.h"
#include "Common/Nodes/NodeDump.h"
#include "ModuleBroker/ModuleBroker.h"
#include "Subsystems/ActionManager/ActionManager.h"
#include "Subsystems/ActionManager/ConfigServiceLookup.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

constexpr WideChar CommandAttribute[] = u"Command";
constexpr WideChar StartCommand[] = u"Start";
constexpr WideChar StopCommand[] = u"Stop";

bool IsForcedCommandValid(const ACNode& node) {
    WideString command;
    if (!node.TryGetText(CommandAttribute, command)) {
        LOG(Warn, u"Empty attribute: '" << CommandAttribute << u"'.");
        return false;
    }
    if (command == StartCommand || command == StopCommand) return true;
    LOG(Warn, u"Unknown command: '" << command << u"'.");
    return false;
}

ACNode MakeParameterNode(bool withOptionBit0) {
    ACNode parameters;
    parameters.Create(WatchParameters::NodeName, nullptr);
    parameters.SetInt32(WatchParameters::ChangesMask, WatchParameters::AllChanges);
    const std::int32_t extraOptions = withOptionBit0 ? WatchParameters::OptionBit0 : 0;
    parameters.SetInt32(WatchParameters::SubscribeOptions, WatchParameters::DefaultOptions | extraOptions);
    return parameters;
}

}  // namespace

ComponentPtr<IACConfigService> GetConfigService() {
    ComponentPtr<IACConfigService> service;
    ThrowIfFailed(CodeOfCall([&] {
        return MBGetNamedInstance(ConfigServiceInstanceName, nullptr, &IACConfigService::Id,
                                  reinterpret_cast<void**>(service.Address()));
    }));
    return service;
}

HRESULT ActionManager::SubscribeForcedAction(IActionListener* listener, const ForcedActionConfig* config,
                                             IActionSubscription** subscription) {
    return MethodEdge(
        TRACED_METHOD(Dbg, "DataCollection::ActionManagement::ActionManager::SubscribeForcedAction"), [&] {
            if (listener == nullptr || subscription == nullptr) ThrowError(E_POINTER);
            ForcedEntry entry = CreateForcedActions(*config);
            auto created = CreateSubscription(listener, {entry.actions->StartAction(), entry.actions->StopAction()});
            try {
                const LockGuard guard(registryLock_);
                entry.number = ++forcedRegistrations_;
                forcedSubscriptions_.Add(entry, guard);
            } catch (...) {
                // As for a regular action: nobody else could.
                created->Unsubscribe();
                throw;
            }
            ThrowIfFailed(entry.subscription->Start());
            TRY_LOG(Dbg, u"Started forced action IACModifySubscription: '" << entry.subscription.Get() << u"' .");
            *subscription = created.Detach();
            return S_OK;
        });
}

ForcedEntry ActionManager::CreateForcedActions(const ForcedActionConfig& config) {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::CreateForcedActions");
    const WideString path = WideString(CommandPointRoot) + u"\\" + config.ParentName + u"\\" + config.LeafName;
    ForcedEntry entry;
    SubscribeToConfigurationChanges(path, entry.subscription, config.WithOptionBit0);
    LOG(Dbg, u"Create forced action. IACModifySubscription: '" << entry.subscription.Get() << u"' .");
    entry.actions = std::make_shared<ForcedActions>();
    return entry;
}

void ActionManager::SubscribeToConfigurationChanges(const WideString& path,
                                                    ComponentPtr<IACModifySubscription>& subscription,
                                                    bool withOptionBit0) {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::SubscribeToConfigurationChanges");
    const FilterByPathNode filter(path, WatchedNodes::PathAndBelow, WatchFilter::EveryLevel);
    const ACNode parameters = MakeParameterNode(withOptionBit0);
    const ComponentPtr<IACConfigService> service = GetConfigService();
    ThrowIfFailed(service->AddSubscription(filter.Handle(), parameters.Handle(), this, subscription.Address()));
}

HRESULT ActionManager::OnTriggered(IACModifySubscription* subscription, int /*kind*/,
                                   IACNodeModifyEnum* modifications) {
    const std::uint64_t registrationsBefore = forcedRegistrations_.load();
    TRY_LOG(Dbg, u"Forced action update received. IACModifySubscription: '" << subscription << u"'.");
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionManagement::ActionManager::OnTriggered"), [&] {
        ForEachModifiedNode(modifications, [&](ModifiedNode& record) {
            if (IsForcedCommandValid(record.node)) {
                record.node = record.node.Clone(AcnWholeTree, 0);
                updateQueue_.Post({subscription, std::move(record), registrationsBefore});
            } else {
                LOG(Err, u"Invalid forced command format: " << record.node);
            }
        });
        return S_OK;
    });
}

// Serves commands until the queue is empty, including those that arrive during the loop. A stop ends the loop early, so
// that a flood of commands cannot delay it; the stop drops the commands that are left.
void ActionManager::UpdateForcedActions() {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ActionManager::UpdateForcedActions");
    while (!worker_.IsStopRequested()) {
        const std::optional<QueuedUpdate> update = updateQueue_.TakeOldest();
        if (!update) break;
        TriggerForcedAction(*update);
    }
}

// A command that has left the queue must not be lost to the log: what this method cannot log, it does all the same.
void ActionManager::TriggerForcedAction(const QueuedUpdate& queued) {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::TriggerForcedAction");
    const LockGuard guard(registryLock_);
    const ForcedActions* const actions = forcedSubscriptions_.Find(queued, guard);
    if (actions == nullptr) {
        TRY_LOG(Err, u"Received unknown IACModifySubscription: '" << queued.key << u"'.");
        return;
    }
    WideString command;
    const HRES read = HRES::Unchecked(CodeOfCall([&] {
        (void)queued.update.node.TryGetText(CommandAttribute, command);  // absent is as unknown as any other text
        return S_OK;
    }));
    if (read.Failed()) {
        // Dropped; the commands after it are served all the same.
        TRY_LOG(Err, u"DataCollection::ActionManagement::ActionManager::TriggerForcedAction" << u" failed: " << read);
    } else if (command == StartCommand) {
        TRY_LOG(Dbg, u"Triggering start action. IACModifySubscription: '" << queued.key << u"'.");
        actions->StartAction()->SetTriggered(true);
        actions->StopAction()->SetTriggered(false);
    } else if (command == StopCommand) {
        actions->StartAction()->SetTriggered(false);
        actions->StopAction()->SetTriggered(true);
    } else {
        TRY_LOG(Warn, u"Unknown command: '" << command << u"' for IACModifySubscription: '" << queued.key << u"'.");
    }
}

}  // namespace DataCollection::ActionManagement
