#include "Platform/Modules.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/auxv.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "ErrnoFailure.h"
#include "MessageModules.h"
#include "ModulePaths.h"
#include "Paths.h"
#include "Platform/Process.h"
#include "Utf.h"

namespace Platform {

using namespace Common;
using namespace Posix;

namespace {

struct LibraryCloser {
    void operator()(void* library) const noexcept { dlclose(library); }
};
using Library = std::unique_ptr<void, LibraryCloser>;

HMODULE ModuleAt(const void* address) noexcept {
    Dl_info info;
    return dladdr(address, &info) != 0 ? static_cast<HMODULE>(info.dli_fbase) : nullptr;
}

HMODULE ModuleOf(const Library& library) noexcept {
    const link_map* map = nullptr;
    return dlinfo(library.get(), RTLD_DI_LINKMAP, &map) == 0 ? ModuleAt(map->l_ld) : nullptr;
}

// Returns one more reference to a module that is already loaded.
Library Reopen(HMODULE module) noexcept {
    Dl_info info;
    link_map* map = nullptr;
    const bool found = dladdr1(module, &info, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) != 0;
    if (!found || info.dli_fbase != module) return nullptr;
    // The main module's name is empty.
    return Library{dlopen(*map->l_name != '\0' ? map->l_name : nullptr, RTLD_NOW | RTLD_NOLOAD)};
}

// The loads that FreeLibrary has not undone yet, one entry for each. A module that is never freed stays loaded.
class LoadList {
public:
    void Add(HMODULE module, Library library) {
        const std::lock_guard guard{lock_};
        libraries_.emplace(module, library.get());
        static_cast<void>(library.release());
    }

    // Returns null if no load of the module is left. The caller closes the result without the lock: that runs other
    // code.
    Library Take(HMODULE module) noexcept {
        const std::lock_guard guard{lock_};
        const auto found = libraries_.find(module);
        if (found == libraries_.end()) return nullptr;
        Library library{found->second};
        libraries_.erase(found);
        return library;
    }

private:
    std::mutex lock_;
    std::multimap<HMODULE, void*> libraries_;
};

LoadList LoadedLibraries;

bool IsMissing(const std::string& path) noexcept {
    struct stat status;
    return stat(path.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

bool IsBareName(const std::string& path) noexcept {
    return path.find('/') == std::string::npos;
}

void TellLoadFailure() {
    const char* const reason = dlerror();
    const WideString line = ToWide(reason != nullptr ? reason : "the library can't be loaded") + u'\n';
    OutputDebugStringW(line.c_str());
}

HMODULE LoadCode(const std::string& path) {
    const HMODULE failure = nullptr;
    Library library{dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)};
    if (!library) {
        TellLoadFailure();
        return Fail(IsMissing(path) ? ERROR_MOD_NOT_FOUND : ERROR_BAD_EXE_FORMAT, failure);
    }
    const HMODULE module = ModuleOf(library);
    if (module == nullptr) return Fail(ERROR_MOD_NOT_FOUND, failure);
    LoadedLibraries.Add(module, std::move(library));
    return module;
}

HMODULE LoadData(std::string path) {
    const HMODULE failure = nullptr;
    // The program's directory comes first, as in the search of code.
    if (IsBareName(path) && !IsMissing(MainModuleDirectory() + path)) path.insert(0, MainModuleDirectory());
    if (IsMissing(path)) return Fail(ERROR_MOD_NOT_FOUND, failure);
    DWORD error = ERROR_SUCCESS;
    const HMODULE module = OpenMessageModule(path, error);
    return module != nullptr ? module : Fail(error, failure);
}

}  // namespace

BOOL GetModuleHandleExW(DWORD flags, const WideChar* address, HMODULE* module) noexcept {
    constexpr DWORD requiredFlags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (module == nullptr) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    *module = nullptr;
    if (flags != requiredFlags) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    *module = ModuleAt(address);
    return *module != nullptr ? TRUE : Fail(ERROR_MOD_NOT_FOUND, FALSE);
}

HMODULE GetModuleHandleW(const WideChar* name) noexcept {
    const HMODULE failure = nullptr;
    if (name != nullptr) return Fail(ERROR_MOD_NOT_FOUND, failure);
    const HMODULE module = ModuleAt(reinterpret_cast<const void*>(getauxval(AT_ENTRY)));
    return module != nullptr ? module : Fail(ERROR_MOD_NOT_FOUND, failure);
}

DWORD GetModuleFileNameW(HMODULE module, WideChar* path, DWORD size) noexcept {
    if (path == nullptr && size != 0) return Fail(ERROR_INVALID_PARAMETER, DWORD{0});
    return OrOutOfMemory(DWORD{0}, [&] {
        const bool isMain = module == nullptr || module == GetModuleHandleW(nullptr);
        if (!isMain && ModuleAt(module) != module) return Fail(ERROR_MOD_NOT_FOUND, DWORD{0});
        const WideString text = ToWide(isMain ? MainModulePath() : LibraryPath(module));
        if (text.empty()) return Fail(ERROR_MOD_NOT_FOUND, DWORD{0});
        if (size == 0) return Fail(ERROR_INSUFFICIENT_BUFFER, DWORD{0});
        const std::size_t length = text.copy(path, size - 1);
        path[length] = u'\0';
        return length == text.size() ? static_cast<DWORD>(length) : Fail(ERROR_INSUFFICIENT_BUFFER, size);
    });
}

HMODULE LoadLibraryExW(const WideChar* path, HANDLE, DWORD flags) noexcept {
    const HMODULE failure = nullptr;
    if (path == nullptr) return Fail(ERROR_INVALID_PARAMETER, failure);
    return OrOutOfMemory(failure, [&] {
        constexpr DWORD dataFlags = LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE;
        if (flags == 0) return LoadCode(NativePath(path));
        if (flags == dataFlags) return LoadData(NativePath(path));
        return Fail(ERROR_INVALID_PARAMETER, failure);
    });
}

BOOL FreeLibrary(HMODULE module) noexcept {
    if (LoadedLibraries.Take(module) || CloseMessageModule(module)) return TRUE;
    return Fail(ERROR_MOD_NOT_FOUND, FALSE);
}

FARPROC GetProcAddress(HMODULE module, const char* name) noexcept {
    const FARPROC failure = nullptr;
    if (name == nullptr) return Fail(ERROR_INVALID_PARAMETER, failure);
    const Library library = Reopen(module);
    if (!library) return Fail(ERROR_MOD_NOT_FOUND, failure);
    // The look-up also finds the exports of the libraries that this one depends on.
    void* const address = dlsym(library.get(), name);
    if (address == nullptr || ModuleAt(address) != module) return Fail(ERROR_PROC_NOT_FOUND, failure);
    return reinterpret_cast<FARPROC>(address);
}

}  // namespace Platform
