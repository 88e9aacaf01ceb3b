#include "Host/Base/LoadedModule.h"

#include <filesystem>
#include <memory>

#include "Common/Base/Text.h"
#include "Host/Base/Failure.h"
#include "Host/Base/UserFile.h"

namespace Host {

using namespace Harbor;

namespace {

struct Unload {
    using pointer = Platform::HMODULE;
    void operator()(Platform::HMODULE library) const noexcept { Platform::FreeLibrary(library); }
};
using Library = std::unique_ptr<Platform::HMODULE, Unload>;

Library Load(const std::string& path) {
    const WideString absolute = std::filesystem::absolute(PathOf(path)).u16string();
    Library library(Platform::LoadLibraryExW(absolute.c_str(), nullptr, 0));
    RequirePlatformSuccess(library != nullptr, "Load module '" + path + "'");
    return library;
}

IComponentsModule* FindModuleObject(Platform::HMODULE library, const std::string& path) {
    const auto getModuleObject = reinterpret_cast<GetComponentsModuleObjectFunction>(
        Platform::GetProcAddress(library, GetComponentsModuleObjectName));
    RequirePlatformSuccess(getModuleObject != nullptr,
                           "Find " + std::string(GetComponentsModuleObjectName) + " in module '" + path + "'");
    IComponentsModule* module = nullptr;
    RequireSuccess(getModuleObject(&module), GetComponentsModuleObjectName);
    return module;
}

}  // namespace

LoadedModule::LoadedModule(const std::string& path) {
    Library library = Load(path);
    module_ = FindModuleObject(library.get(), path);
    library_ = library.release();
}

LoadedModule::~LoadedModule() {
    std::int32_t locked = 1;
    module_->IsModuleLocked(&locked);
    if (locked == 0) Platform::FreeLibrary(library_);
}

void* LoadedModule::CreateInstance(const GUID& classId, const GUID& iid) const {
    void* created = nullptr;
    RequireSuccess(module_->CreateInstance(&classId, &iid, &created), "CreateInstance");
    return created;
}

}  // namespace Host
