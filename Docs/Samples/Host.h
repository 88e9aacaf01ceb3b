// A minimal host: loads the module, creates objects of its classes, and unloads it.
#pragma once

#include <dlfcn.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "Harbor/ComponentPtr.h"
#include "Harbor/ComponentsModule.h"
#include "Harbor/Configurable.h"

// Throws if `code`, the result of `call`, is a failure. Negative codes are failures.
inline void Check(Harbor::HRESULT code, const std::string& call) {
    if (Harbor::Failed(code)) throw std::runtime_error(call + " failed: " + std::to_string(code));
}

class Host {
public:
    explicit Host(const char* modulePath) {
        if (modulePath == nullptr) throw std::runtime_error("The path of the module is missing.");
        library_ = dlopen(modulePath, RTLD_NOW);
        if (library_ == nullptr) throw std::runtime_error(dlerror());
        const auto getModule = reinterpret_cast<Harbor::GetComponentsModuleObjectFunction>(
            dlsym(library_, Harbor::GetComponentsModuleObjectName));
        if (getModule == nullptr) throw std::runtime_error(dlerror());
        Check(getModule(&module_), Harbor::GetComponentsModuleObjectName);
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    ~Host() {
        std::int32_t isLocked = 1;  // while an object of the module is alive
        module_->IsModuleLocked(&isLocked);
        if (isLocked == 0) dlclose(library_);
    }

    // Creates an object of the class and returns its interface I.
    template <class I>
    Harbor::ComponentPtr<I> Create(const Harbor::GUID& classId) const {
        void* object = nullptr;
        Check(module_->CreateInstance(&classId, &I::Id, &object), "CreateInstance");
        return Harbor::ComponentPtr<I>::Attach(static_cast<I*>(object));
    }

private:
    void* library_ = nullptr;
    Harbor::IComponentsModule* module_ = nullptr;
};

// Configures the manager. Its worker checks every `pollingMilliseconds` what is due.
template <class Manager>
void Configure(const Harbor::ComponentPtr<Manager>& manager, std::uint32_t pollingMilliseconds) {
    AcnHandle node = nullptr;
    Check(AcnCreateNode(u"ActionManager", nullptr, &node), "AcnCreateNode");
    Check(AcnSetAttribute(node, u"PollingIntervalInMilliseconds", AcnTypeUInt32, &pollingMilliseconds,
                          sizeof(pollingMilliseconds)),
          "AcnSetAttribute");
    Harbor::ComponentPtr<Harbor::IConfigurable> configurable;
    Check(manager.QueryTo(configurable), "QueryInterface");
    Check(configurable->Configure(node), "Configure");
    AcnCloseNodeHandle(node);
}
