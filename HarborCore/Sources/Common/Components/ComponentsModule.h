// The module object: the table of the classes that can be created, and the count of objects and locks that keep the
// library in use.
#pragma once

#include <atomic>
#include <vector>

#include "Common/Base/Lock.h"
#include "Harbor/ComponentsModule.h"

namespace Harbor {

using ClassFactoryFunction = HRESULT (*)(const GUID* iid, void** result);

// The first base of the module object. It has the slots of IComponentUnknown and a destructor after them.
struct ComponentsModuleRoot : IComponentUnknown {
    virtual ~ComponentsModuleRoot() = default;
};

class ComponentsModule final : public ComponentsModuleRoot, public IComponentsModule {
public:
    // Returns the module object. The first call, by the first ClassRegistrar, creates it.
    static ComponentsModule& Instance();

    // LockModule and UnlockModule for the objects of the module, without the way through the module object.
    static void CountObject() noexcept { LockCount.fetch_add(1); }
    static void DiscountObject() noexcept { LockCount.fetch_sub(1); }

    // Called by ClassRegistrar at load and unload. The first registration of an id counts.
    void RegisterClass(const GUID& classId, ClassFactoryFunction factory);
    void UnregisterClass(const GUID& classId);

    std::uint32_t AddRef() override;
    std::uint32_t Release() override;
    HRESULT QueryInterface(const GUID* iid, void** result) override;
    HRESULT NoOperation() override;
    HRESULT DumpAliveObjects() override;
    std::uint32_t LockModule() override;
    std::uint32_t UnlockModule() override;
    HRESULT IsModuleLocked(std::int32_t* flag) override;
    HRESULT CreateInstance(const GUID* classId, const GUID* iid, void** result) override;

    ComponentsModule(const ComponentsModule&) = delete;
    ComponentsModule& operator=(const ComponentsModule&) = delete;

private:
    template <class T>
    friend class SingletonHolder;
    ComponentsModule() = default;

    struct Class {
        GUID id;
        ClassFactoryFunction factory;
    };
    // Returns null if no class has the id.
    const Class* FindClass(const GUID& classId) const noexcept;

    static inline constinit std::atomic<std::uint32_t> LockCount{0};  // objects and explicit locks
    Lock classLock_;              // guards classes_; not held while a factory is called
    std::vector<Class> classes_;  // a module has few classes: a search from the first is the fastest
};

// Registers a class at load and unregisters it at unload.
class ClassRegistrar {
public:
    ClassRegistrar(const GUID& classId, ClassFactoryFunction factory);
    ClassRegistrar(const ClassRegistrar&) = delete;
    ClassRegistrar& operator=(const ClassRegistrar&) = delete;
    ~ClassRegistrar();

private:
    const GUID classId_;
};

}  // namespace Harbor
