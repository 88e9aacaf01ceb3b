// The registry, read only. On a system without a registry it is a text file in the usual .reg export format, which the
// environment variable ORV_REGISTRY_FILE names and which is read whenever a key is opened. If the variable is not set,
// no key exists. These functions return their code and do not change the last error.
#pragma once

#include "Platform/Types.h"

namespace Platform {

using HKEY = struct RegistryKeyOpaque*;
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::uintptr_t{0x80000001});
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::uintptr_t{0x80000002});

inline constexpr DWORD KEY_READ = 0x20019;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_DWORD = 4;

// Opens a key below a root. An empty or null path is the root itself. Names ignore the case of ASCII letters. An open
// key shows the content that the key had when it was opened. Returns ERROR_FILE_NOT_FOUND if the key does not exist,
// ERROR_ACCESS_DENIED if `access` asks for more than KEY_READ. The caller must close the key.
PLATFORM_EXPORT LONG RegOpenKeyExW(HKEY root, const WideChar* path, DWORD options, DWORD access, HKEY* key) noexcept;
PLATFORM_EXPORT LONG RegCloseKey(HKEY key) noexcept;

// Reads the name of the value at an index. On input `*nameLength` is the capacity in characters including the
// terminator, on output the length without it. If the name does not fit, returns ERROR_MORE_DATA and stores the size
// required. Returns ERROR_NO_MORE_ITEMS after the last value. `data` and `dataSize` must be null: RegQueryValueExW
// reads the data.
PLATFORM_EXPORT LONG RegEnumValueW(HKEY key, DWORD index, WideChar* name, DWORD* nameLength, DWORD* reserved,
                                   DWORD* type, std::uint8_t* data, DWORD* dataSize) noexcept;
// Reads the type and the bytes of a value. An empty or null name is the default value. Texts include their terminator.
// If `data` is null, only the type and the size are stored. If the bytes do not fit, returns ERROR_MORE_DATA and stores
// the size required. Returns ERROR_FILE_NOT_FOUND if the value does not exist.
PLATFORM_EXPORT LONG RegQueryValueExW(HKEY key, const WideChar* name, DWORD* reserved, DWORD* type, std::uint8_t* data,
                                      DWORD* dataSize) noexcept;

}  // namespace Platform
