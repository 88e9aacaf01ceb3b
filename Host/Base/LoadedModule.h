// The module, loaded for as long as this lives.
#pragma once

#include <string>

#include "Harbor/ComponentPtr.h"
#include "Harbor/ComponentsModule.h"
#include "Platform/Modules.h"

namespace Host {

// Failures are thrown as CallFailure.
class LoadedModule {
public:
    // `path` in UTF-8. A relative one is below the working directory; no search path plays a part.
    explicit LoadedModule(const std::string& path);
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    // A module that is still in use stays loaded, since its code would vanish under its objects.
    ~LoadedModule();

    Harbor::IComponentsModule& Get() const noexcept { return *module_; }

    template <class I>
    [[nodiscard]] Harbor::ComponentPtr<I> Create(const Harbor::GUID& classId) const {
        return Harbor::ComponentPtr<I>::Attach(static_cast<I*>(CreateInstance(classId, I::Id)));
    }

private:
    [[nodiscard]] void* CreateInstance(const Harbor::GUID& classId, const Harbor::GUID& iid) const;

    Platform::HMODULE library_ = nullptr;
    Harbor::IComponentsModule* module_ = nullptr;  // lives as long as the library; not counted
};

}  // namespace Host
