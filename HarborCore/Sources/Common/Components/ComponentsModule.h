// The module object: the table of creatable classes and the count of what keeps the library in use.
#pragma once

#include <atomic>
#include <functional>
#include <map>

#include "Common/Base/Guards.h"
#include "Harbor/ComponentsModule.h"

namespace Harbor {

using ClassFactoryFunction = std::function<HRESULT(const GUID* iid, void** result)>;

// The first base of the module object: the root view, with a destructor slot behind the three.
struct ComponentsModuleRoot : IComponentUnknown {
    virtual ~ComponentsModuleRoot() = default;
};

class ComponentsModule final : public ComponentsModuleRoot, public IComponentsModule {
public:
    // Created at the first call, in practice by the first ClassRegistrar.
    static ComponentsModule& Instance();

    // For ClassRegistrar, at load and unload.
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

    // By the bytes of the ids as they lie in memory.
    struct LessById {
        bool operator()(const GUID& a, const GUID& b) const noexcept { return std::memcmp(&a, &b, sizeof(GUID)) < 0; }
    };

    std::atomic<std::uint32_t> lockCount_{0};  // living objects and explicit locks
    CriticalSection classLock_;                // guards classes_; not held while a factory runs
    std::map<GUID, ClassFactoryFunction, LessById> classes_;
};

// Enters a class at load and takes it out at unload.
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
