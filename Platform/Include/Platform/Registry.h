// The registry, read only. On POSIX it is a text file in the usual .reg export format, which the environment variable
// ORV_REGISTRY_FILE names and which is read whenever a key is opened; if the variable is not set, no key exists. These
// functions return their code.
#pragma once

#include "Platform/Types.h"

namespace Platform {

using HKEY = struct RegistryKeyOpaque*;
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::intptr_t{-0x7FFFFFFF});
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::intptr_t{-0x7FFFFFFE});

inline constexpr DWORD KEY_READ = 0x20019;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_DWORD = 4;

// Opens a key below a root. An empty or null path is the root itself. Names ignore the case of ASCII letters. On POSIX
// an open key shows the content that the key had when it was opened, and ERROR_ACCESS_DENIED is returned if `access`
// asks for more than KEY_READ. Returns ERROR_FILE_NOT_FOUND if the key does not exist. The caller must close the key.
PLATFORM_API LONG RegOpenKeyExW(HKEY root, const WideChar* path, DWORD options, DWORD access, HKEY* key) noexcept;
PLATFORM_API LONG RegCloseKey(HKEY key) noexcept;

// Reads the name of the value at an index. On input `*nameLength` is the capacity in characters including the
// terminator, on output the length without it. If the name does not fit, returns ERROR_MORE_DATA and stores the size
// required. Returns ERROR_NO_MORE_ITEMS after the last value. `data` and `dataSize` must be null: RegQueryValueExW
// reads the data.
PLATFORM_API LONG RegEnumValueW(HKEY key, DWORD index, WideChar* name, DWORD* nameLength, DWORD* reserved, DWORD* type,
                                std::uint8_t* data, DWORD* dataSize) noexcept;
// Reads the type and the bytes of a value. An empty or null name is the default value. Texts include their terminator.
// If `data` is null, only the type and the size are stored. If the bytes do not fit, returns ERROR_MORE_DATA and stores
// the size required. Returns ERROR_FILE_NOT_FOUND if the value does not exist.
PLATFORM_API LONG RegQueryValueExW(HKEY key, const WideChar* name, DWORD* reserved, DWORD* type, std::uint8_t* data,
                                   DWORD* dataSize) noexcept;

}  // namespace Platform
