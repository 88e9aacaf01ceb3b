#include "Platform/Modules.h"

#include "Native.h"

namespace Platform {

using Windows::Layer;
using Windows::Native;

BOOL GetModuleHandleExW(DWORD flags, const WideChar* address, HMODULE* module) noexcept {
    return ::GetModuleHandleExW(flags, Native(address), Native(module));
}

HMODULE GetModuleHandleW(const WideChar* name) noexcept {
    return Layer(::GetModuleHandleW(Native(name)));
}

DWORD GetModuleFileNameW(HMODULE module, WideChar* path, DWORD size) noexcept {
    return ::GetModuleFileNameW(Native(module), Native(path), size);
}

HMODULE LoadLibraryExW(const WideChar* path, HANDLE reserved, DWORD flags) noexcept {
    return Layer(::LoadLibraryExW(Native(path), Native(reserved), flags));
}

BOOL FreeLibrary(HMODULE module) noexcept {
    return ::FreeLibrary(Native(module));
}

FARPROC GetProcAddress(HMODULE module, const char* name) noexcept {
    return reinterpret_cast<FARPROC>(::GetProcAddress(Native(module), name));
}

}  // namespace Platform
