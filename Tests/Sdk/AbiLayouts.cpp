// Prints what crosses the binary interface: the layout of the records, the place of each method in the table of its
// interface, and the ids.
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "DataCollection/ActionManager.h"
#include "DataCollection/TriggerStrategy.h"
#include "Harbor/ComponentsModule.h"
#include "Harbor/ConfigService.h"
#include "Harbor/Configurable.h"
#include "Platform/ErrorObjects.h"

using namespace DataCollection;
using namespace DataCollection::ActionManagement;
using namespace Harbor;

namespace {

// A pointer to a virtual method contains the place in bytes, plus one.
template <class Method>
std::size_t SlotOf(Method method) {
    std::size_t place = 0;
    std::memcpy(&place, &method, sizeof(place));
    return (place - 1) / sizeof(void*);
}

void PrintId(const char* name, const GUID& id) {
    std::printf("id %s %08X-%04X-%04X", name, id.Data1, id.Data2, id.Data3);
    for (const int byte : id.Data4) std::printf("-%02X", byte);
    std::puts("");
}

}  // namespace

#define RECORD(record) std::printf("record %s: %zu bytes, aligned to %zu\n", #record, sizeof(record), alignof(record))
#define FIELD(record, field) \
    std::printf("  %s.%s at %zu, %zu bytes\n", #record, #field, offsetof(record, field), sizeof(record::field))
#define SLOT(method) std::printf("slot %zu %s\n", SlotOf(&method), #method)
#define ID(name) PrintId(#name, name)

int main() {
    RECORD(GUID);
    RECORD(WideString);
    RECORD(bool);
    RECORD(TimedActionSettings);
    FIELD(TimedActionSettings, StartSeconds);
    FIELD(TimedActionSettings, IsLocalTime);
    FIELD(TimedActionSettings, IntervalSeconds);
    FIELD(TimedActionSettings, Type);
    FIELD(TimedActionSettings, IntervalMilliseconds);
    RECORD(ForcedActionConfig);
    FIELD(ForcedActionConfig, LeafName);
    FIELD(ForcedActionConfig, ParentName);
    FIELD(ForcedActionConfig, WithOptionBit0);

    SLOT(IComponentUnknown::AddRef);
    SLOT(IComponentUnknown::Release);
    SLOT(IComponentUnknown::QueryInterface);
    SLOT(IComponentsModule::NoOperation);
    SLOT(IComponentsModule::DumpAliveObjects);
    SLOT(IComponentsModule::LockModule);
    SLOT(IComponentsModule::UnlockModule);
    SLOT(IComponentsModule::IsModuleLocked);
    SLOT(IComponentsModule::CreateInstance);
    SLOT(IConfigurable::Configure);
    SLOT(IActionManager::SubscribeRegularAction);
    SLOT(IActionManager::SubscribeForcedAction);
    SLOT(IActionListener::OnActionTriggered);
    SLOT(IActionSubscription::Start);
    SLOT(IActionSubscription::Unsubscribe);
    SLOT(IActionSubscriptionControl::SetListener);
    SLOT(IActionSubscriptionControl::SetAction);
    SLOT(IActionSubscriptionControl::IsAlive);
    SLOT(IActionSubscriptionControl::TriggerActionsIfNeeded);
    SLOT(IAction::GetType);
    SLOT(IAction::GetName);
    SLOT(IActionControl::SetNameAndType);
    SLOT(IActionControl::IsDisposed);
    SLOT(IActionControl::OnSubscriptionAttached);
    SLOT(IActionControl::OnSubscriptionDisposed);
    SLOT(IActionControl::SetTriggered);
    SLOT(IActionControl::GetTriggered);
    SLOT(ITriggerStrategy::OnConfigurationUpdate);
    SLOT(ITriggerStrategy::ReservedOperation);
    SLOT(IACConfigService::AddSubscription);
    SLOT(IACConfigService::RemoveSubscription);
    SLOT(IACModifySubscription::Start);
    SLOT(IACModifyCallback::OnTriggered);
    SLOT(IACNodeModifyEnum::GetNodeEnumerator);
    SLOT(IACNodeEnumerator::Reset);
    SLOT(IACNodeEnumerator::Next);
    SLOT(Platform::IErrorInfo::QueryInterface);
    SLOT(Platform::IErrorInfo::AddRef);
    SLOT(Platform::IErrorInfo::Release);
    SLOT(Platform::IErrorInfo::GetGUID);
    SLOT(Platform::IErrorInfo::GetSource);
    SLOT(Platform::IErrorInfo::GetDescription);
    SLOT(Platform::IErrorInfo::GetHelpFile);
    SLOT(Platform::IErrorInfo::GetHelpContext);

    ID(IComponentUnknown::Id);
    ID(IComponentsModule::Id);
    ID(IConfigurable::Id);
    ID(IActionManager::Id);
    ID(IActionSubscription::Id);
    ID(IActionSubscriptionControl::Id);
    ID(IAction::Id);
    ID(IActionControl::Id);
    ID(ITriggerStrategy::Id);
    ID(IACConfigService::Id);
    ID(ActionManagerClassId);
    ID(ScopeItemUpdateStrategyClassId);
    ID(DefaultTriggerStrategyClassId);
    ID(ScheduleActionType);
    ID(ForcedStartActionType);
    ID(ForcedStopActionType);
}
