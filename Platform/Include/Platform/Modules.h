// Loaded modules and their paths.
#pragma once

#include "Platform/Types.h"

namespace Platform {

inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 2;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 4;
inline constexpr DWORD LOAD_LIBRARY_AS_DATAFILE = 0x2;
inline constexpr DWORD LOAD_LIBRARY_AS_IMAGE_RESOURCE = 0x20;

using FARPROC = void (*)();

// Finds the module that contains the address, and does not count a reference on it. `flags` must be both flags above,
// else ERROR_INVALID_PARAMETER.
PLATFORM_API BOOL GetModuleHandleExW(DWORD flags, const WideChar* address, HMODULE* module) noexcept;
// Returns the main module of the process. `name` must be null, else ERROR_MOD_NOT_FOUND.
PLATFORM_API HMODULE GetModuleHandleW(const WideChar* name) noexcept;
// Stores the absolute path of a module, whatever path it was loaded by. Null is the main module of the process. Returns
// the length without the terminator. If the path does not fit, it is cut, and the result is `size` with
// ERROR_INSUFFICIENT_BUFFER. Returns 0 on failure.
PLATFORM_API DWORD GetModuleFileNameW(HMODULE module, WideChar* path, DWORD size) noexcept;

// With flags 0, loads a code module by its path; if that fails, POSIX writes the reason to the debugger's output. With
// both LOAD_LIBRARY flags above, opens a message module (see Messages.h) and runs no code. Returns null on failure. The
// caller must free the module.
PLATFORM_API HMODULE LoadLibraryExW(const WideChar* path, HANDLE reserved, DWORD flags) noexcept;
PLATFORM_API BOOL FreeLibrary(HMODULE module) noexcept;
// Returns the address of a function that the module itself exports, or null with ERROR_PROC_NOT_FOUND.
PLATFORM_API FARPROC GetProcAddress(HMODULE module, const char* name) noexcept;

}  // namespace Platform
