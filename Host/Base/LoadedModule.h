// A module that is loaded for the lifetime of an object.
#pragma once

#include <string>

#include "Harbor/ComponentPtr.h"
#include "Harbor/ComponentsModule.h"
#include "Platform/Modules.h"

namespace Host {

// Failures are thrown as CallFailure.
class LoadedModule {
public:
    // `path` is in UTF-8. A relative path starts in the working directory; no search path is used.
    explicit LoadedModule(const std::string& path);
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    // Unloads the module, unless it is still in use: the code of its live objects would be gone.
    ~LoadedModule();

    Platform::HMODULE Handle() const noexcept { return library_; }
    Harbor::IComponentsModule& Get() const noexcept { return *module_; }

    template <class I>
    [[nodiscard]] Harbor::ComponentPtr<I> Create(const Harbor::GUID& classId) const {
        return Harbor::ComponentPtr<I>::Attach(static_cast<I*>(CreateInstance(classId, I::Id)));
    }

private:
    [[nodiscard]] void* CreateInstance(const Harbor::GUID& classId, const Harbor::GUID& iid) const;

    Platform::HMODULE library_ = nullptr;
    Harbor::IComponentsModule* module_ = nullptr;  // lives as long as the library and is not reference-counted
};

}  // namespace Host
