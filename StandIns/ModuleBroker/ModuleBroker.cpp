#include "ModuleBroker/Registration.h"

#include <map>
#include <new>
#include <string_view>

#include "Common/Base/Lock.h"
#include "Harbor/ComponentPtr.h"

using namespace Harbor;

namespace {

using Instance = ComponentPtr<IComponentUnknown>;

Harbor::Lock InstancesLock;
std::map<WideString, Instance, std::less<>> Instances;  // guarded by InstancesLock

Instance FindInstance(std::u16string_view name) {
    const std::lock_guard guard(InstancesLock);
    const auto found = Instances.find(name);
    return found != Instances.end() ? found->second : Instance();
}

// Both return the former instance, so that the caller releases it without the lock: the destructor of a component may
// call the broker.
Instance Exchange(std::u16string_view name, Instance instance) {
    const std::lock_guard guard(InstancesLock);
    std::swap(Instances[WideString(name)], instance);
    return instance;
}

Instance TakeOut(std::u16string_view name) {
    const std::lock_guard guard(InstancesLock);
    const auto found = Instances.find(name);
    if (found == Instances.end()) return {};
    Instance taken = std::move(found->second);
    Instances.erase(found);
    return taken;
}

}  // namespace

extern "C" {

HRESULT MBGetNamedInstance(const WideChar* name, void* reserved, const GUID* iid, void** result) {
    if (name == nullptr || iid == nullptr || result == nullptr) return E_POINTER;
    if (reserved != nullptr) return E_INVALIDARG;
    const Instance instance = FindInstance(name);
    return instance ? instance->QueryInterface(iid, result) : NOT_FOUND;
}

HRESULT MBSetNamedInstance(const WideChar* name, IComponentUnknown* instance) {
    if (name == nullptr) return E_POINTER;
    try {
        const Instance previous = instance != nullptr ? Exchange(name, Instance(instance)) : TakeOut(name);
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}
}
