// A component library that is loaded for the lifetime of an object, for hosts.
//
//     const Harbor::Module module = Harbor::Module::Load("/usr/lib/OrvActionManager/OrvActionManager.so");
//     const auto strategy = Harbor::Create<DataCollection::ITriggerStrategy>(
//         module, DataCollection::ScopeItemUpdateStrategyClassId);
#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "Harbor/ComponentPtr.h"
#include "Harbor/ComponentsModule.h"
#include "Harbor/Failure.h"
#include "Platform/Modules.h"

namespace Harbor {

class Module {
public:
    // Loads the library. A relative path starts in the working directory; no search path is used. Failures are thrown
    // as Failure.
    [[nodiscard]] static Module Load(const std::filesystem::path& path) {
        const std::filesystem::path absolute = std::filesystem::absolute(path);
        Library library(Platform::LoadLibraryExW(absolute.u16string().c_str(), nullptr, 0));
        const std::string name = "module '" + ToUtf8(path.u16string()) + "'";
        ThrowLastErrorIf(!library, "Load " + name);
        const auto getModule = reinterpret_cast<GetComponentsModuleObjectFunction>(
            Platform::GetProcAddress(library.get(), GetComponentsModuleObjectName));
        ThrowLastErrorIf(getModule == nullptr, "Find GetComponentsModuleObject in " + name);
        IComponentsModule* object = nullptr;
        ThrowIfFailed(getModule(&object), GetComponentsModuleObjectName);
        return Module(std::move(library), *object);
    }

    Module(Module&&) noexcept = default;
    Module& operator=(Module&&) = delete;
    // Unloads the library, unless objects of it or locks on it exist: their code would be gone. All calls into the
    // library must have returned, on all threads.
    ~Module() {
        std::int32_t isLocked = 0;
        if (library_ && object_->IsModuleLocked(&isLocked) == S_OK && isLocked != 0) (void)library_.release();
    }

    // Lives as long as the library is loaded.
    [[nodiscard]] IComponentsModule& Get() const noexcept { return *object_; }
    operator IComponentsModule&() const noexcept { return *object_; }
    // The loaded library. No reference is counted, and the handle must not be closed.
    [[nodiscard]] Platform::HMODULE Handle() const noexcept { return library_.get(); }

private:
    using Library = OwnedHandle<Platform::HMODULE, &Platform::FreeLibrary>;

    Module(Library library, IComponentsModule& object) noexcept : library_(std::move(library)), object_(&object) {}

    Library library_;
    IComponentsModule* object_;
};

// Creates an object of the class and returns its interface I. Failures are thrown as Failure.
template <class I>
[[nodiscard]] ComponentPtr<I> Create(IComponentsModule& module, const GUID& classId) {
    void* created = nullptr;
    ThrowIfFailed(module.CreateInstance(&classId, &I::Id, &created), "CreateInstance");
    return ComponentPtr<I>::Attach(static_cast<I*>(created));
}

}  // namespace Harbor
