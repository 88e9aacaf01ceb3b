// The module object: the table of the classes that can be created, and the count of objects and locks that keep the
// library in use.
#pragma once

#include <atomic>
#include <functional>
#include <map>

#include "Common/Base/Guards.h"
#include "Harbor/ComponentsModule.h"

namespace Harbor {

using ClassFactoryFunction = std::function<HRESULT(const GUID* iid, void** result)>;

// The first base of the module object. It has the slots of IComponentUnknown and a destructor after them.
struct ComponentsModuleRoot : IComponentUnknown {
    virtual ~ComponentsModuleRoot() = default;
};

class ComponentsModule final : public ComponentsModuleRoot, public IComponentsModule {
public:
    // Returns the module object. The first call, by the first ClassRegistrar, creates it.
    static ComponentsModule& Instance();

    // Called by ClassRegistrar at load and unload.
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

    // Orders ids by their bytes in memory.
    struct LessById {
        bool operator()(const GUID& a, const GUID& b) const noexcept { return std::memcmp(&a, &b, sizeof(GUID)) < 0; }
    };

    std::atomic<std::uint32_t> lockCount_{0};  // objects and explicit locks
    CriticalSection classLock_;                // guards classes_; not held while a factory is called
    std::map<GUID, ClassFactoryFunction, LessById> classes_;
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
