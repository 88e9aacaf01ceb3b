#include "Common/Settings/ModuleInfo.h"

#include "Common/Base/HRes.h"
#include "Common/Base/SingletonHolder.h"
#include "Platform/Environment.h"
#include "Platform/Errors.h"

namespace Harbor {
namespace {

constexpr std::size_t FirstBufferSize = 260;
constexpr std::u16string_view Separators = u"\\/";

const char InsideThisModule = 0;

WideString AskFilePath(Platform::HMODULE module) {
    WideString path(FirstBufferSize, u'\0');
    for (;;) {
        const auto size = static_cast<Platform::DWORD>(path.size());
        const Platform::DWORD length = Platform::GetModuleFileNameW(module, path.data(), size);
        ThrowLastErrorIfFalse(length != 0);
        if (length < size) {
            path.resize(length);
            return path;
        }
        path.resize(std::size_t{length} * 2);
    }
}

// The settings store asks for both when the module is loaded. They are kept, since the system may need a file to
// answer, and later the process may have no descriptor left for it.
struct KnownPaths {
    const WideString process = AskFilePath(nullptr);
    const WideString own = AskFilePath(OwnModule());
};

constinit SingletonHolder<KnownPaths> Paths;

}  // namespace

Platform::HMODULE OwnModule() {
    constexpr Platform::DWORD flags =
        Platform::GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | Platform::GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    Platform::HMODULE module = nullptr;
    ThrowLastErrorIfFalse(
        Platform::GetModuleHandleExW(flags, reinterpret_cast<const WideChar*>(&InsideThisModule), &module));
    return module;
}

bool IsMainModule(Platform::HMODULE module) noexcept {
    return module == Platform::GetModuleHandleW(nullptr);
}

WideString ModuleFilePath(Platform::HMODULE module) {
    const KnownPaths& known = Paths.Get();
    if (module == nullptr) return known.process;
    return module == OwnModule() ? known.own : AskFilePath(module);
}

WideString ModuleDirectory(Platform::HMODULE module) {
    WideString path = ModuleFilePath(module);
    path.resize(path.find_last_of(Separators) + 1);
    return path;
}

WideString ModuleName(Platform::HMODULE module, Extension extension) {
    const WideString path = ModuleFilePath(module);
    WideString name = path.substr(path.find_last_of(Separators) + 1);
    if (extension == Extension::Strip) name.resize(std::min(name.rfind(u'.'), name.size()));
    return name;
}

WideString ExpandEnvironment(const WideString& text) {
    WideString expanded(FirstBufferSize, u'\0');
    for (;;) {
        const auto capacity = static_cast<Platform::DWORD>(expanded.size());
        const Platform::DWORD needed = Platform::ExpandEnvironmentStringsW(text.c_str(), expanded.data(), capacity);
        if (needed == 0) return text;
        expanded.resize(needed <= capacity ? needed - 1 : needed);
        if (needed <= capacity) return expanded;
    }
}

}  // namespace Harbor
