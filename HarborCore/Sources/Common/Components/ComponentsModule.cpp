#include "Common/Components/ComponentsModule.h"

#include "Common/Base/SingletonHolder.h"
#include "Common/Components/DbgAliveObjectsTracker.h"

namespace Harbor {
namespace {

constinit SingletonHolder<ComponentsModule> Holder;

// The result of AddRef and Release: the object lives as long as the library is loaded.
constexpr std::uint32_t NotCounted = 0xFFFFFFFF;

}  // namespace

ComponentsModule& ComponentsModule::Instance() {
    return Holder.Get();
}

void ComponentsModule::RegisterClass(const GUID& classId, ClassFactoryFunction factory) {
    const LockGuard guard(classLock_);
    if (FindClass(classId) == nullptr) classes_.push_back({classId, factory});
}

void ComponentsModule::UnregisterClass(const GUID& classId) {
    const LockGuard guard(classLock_);
    std::erase_if(classes_, [&](const Class& known) { return known.id == classId; });
}

const ComponentsModule::Class* ComponentsModule::FindClass(const GUID& classId) const noexcept {
    for (const Class& known : classes_) {
        if (known.id == classId) return &known;
    }
    return nullptr;
}

std::uint32_t ComponentsModule::AddRef() {
    return NotCounted;
}

std::uint32_t ComponentsModule::Release() {
    return NotCounted;
}

HRESULT ComponentsModule::QueryInterface(const GUID* iid, void** result) {
    if (iid == nullptr || result == nullptr) return E_INVALIDARG;
    if (*iid == IComponentUnknown::Id) {
        *result = static_cast<ComponentsModuleRoot*>(this);
    } else if (*iid == IComponentsModule::Id) {
        *result = static_cast<IComponentsModule*>(this);
    } else {
        return E_NOINTERFACE;
    }
    return S_OK;
}

HRESULT ComponentsModule::NoOperation() {
    return S_OK;
}

HRESULT ComponentsModule::DumpAliveObjects() {
    DbgAliveObjectsTracker::Instance().Dump();
    return S_OK;
}

std::uint32_t ComponentsModule::LockModule() {
    return LockCount.fetch_add(1) + 1;
}

std::uint32_t ComponentsModule::UnlockModule() {
    return LockCount.fetch_sub(1) - 1;
}

HRESULT ComponentsModule::IsModuleLocked(std::int32_t* flag) {
    if (flag == nullptr) return E_POINTER;
    *flag = LockCount.load() != 0 ? 1 : 0;
    return S_OK;
}

HRESULT ComponentsModule::CreateInstance(const GUID* classId, const GUID* iid, void** result) {
    ClassFactoryFunction factory = nullptr;
    {
        const LockGuard guard(classLock_);
        if (const Class* const known = FindClass(*classId)) factory = known->factory;
    }
    return factory != nullptr ? factory(iid, result) : REGDB_E_CLASSNOTREG;
}

ClassRegistrar::ClassRegistrar(const GUID& classId, ClassFactoryFunction factory) : classId_(classId) {
    ComponentsModule::Instance().RegisterClass(classId_, factory);
}

ClassRegistrar::~ClassRegistrar() {
    ComponentsModule::Instance().UnregisterClass(classId_);
}

}  // namespace Harbor
