// Loaded modules and their paths.
#pragma once

#include "Platform/Types.h"

namespace Platform {

inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 2;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 4;
inline constexpr DWORD LOAD_LIBRARY_AS_DATAFILE = 0x2;
inline constexpr DWORD LOAD_LIBRARY_AS_IMAGE_RESOURCE = 0x20;

using FARPROC = void (*)();

// With the two flags above: the module that holds the address, its reference count untouched. Other flags are
// ERROR_INVALID_PARAMETER.
PLATFORM_EXPORT BOOL GetModuleHandleExW(DWORD flags, const WideChar* address, HMODULE* module) noexcept;
// A null name means the process's main module; a name isn't looked up (ERROR_MOD_NOT_FOUND).
PLATFORM_EXPORT HMODULE GetModuleHandleW(const WideChar* name) noexcept;
// The absolute path of a module, null meaning the process's main module, however it was loaded. Gives the length, or
// `size` with a cut text and ERROR_INSUFFICIENT_BUFFER if it doesn't fit, or 0 on failure.
PLATFORM_EXPORT DWORD GetModuleFileNameW(HMODULE module, WideChar* path, DWORD size) noexcept;

// Flags 0 loads code by its path. Both data-file flags open a message module (see Messages.h) and run nothing of it.
// Null on failure; the caller frees. A code module's load failure is told in detail on the debugger's output.
PLATFORM_EXPORT HMODULE LoadLibraryExW(const WideChar* path, HANDLE reserved, DWORD flags) noexcept;
PLATFORM_EXPORT BOOL FreeLibrary(HMODULE module) noexcept;
PLATFORM_EXPORT FARPROC GetProcAddress(HMODULE module, const char* name) noexcept;

}  // namespace Platform
