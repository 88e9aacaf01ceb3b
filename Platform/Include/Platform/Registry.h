// The registry, read only. Without one it is a text file in the usual .reg export form that the environment variable
// ORV_REGISTRY_FILE names, read when a key is opened; without that, every key is missing. These functions return
// their code and leave the last error alone.
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

// Opens a key below a root, an empty or null path being the root itself; names ignore the case of ASCII letters. What
// is read is the key's content at this moment. ERROR_FILE_NOT_FOUND if it isn't there, ERROR_ACCESS_DENIED for more
// access than KEY_READ. The caller closes the key.
PLATFORM_EXPORT LONG RegOpenKeyExW(HKEY root, const WideChar* path, DWORD options, DWORD access, HKEY* key) noexcept;
PLATFORM_EXPORT LONG RegCloseKey(HKEY key) noexcept;

// The name of the value at an index. `nameLength` is the room in characters, with the terminator, on the way in, and
// the length without it on the way out. ERROR_MORE_DATA stores the size needed; ERROR_NO_MORE_ITEMS ends the values.
// The data pointers must be null: RegQueryValueExW reads the data.
PLATFORM_EXPORT LONG RegEnumValueW(HKEY key, DWORD index, WideChar* name, DWORD* nameLength, DWORD* reserved,
                                   DWORD* type, std::uint8_t* data, DWORD* dataSize) noexcept;
// A value's type and bytes; an empty or null name is the default value. With a null `data` the size alone is stored.
// Texts carry their terminator. ERROR_MORE_DATA stores the size needed, ERROR_FILE_NOT_FOUND is a missing value.
PLATFORM_EXPORT LONG RegQueryValueExW(HKEY key, const WideChar* name, DWORD* reserved, DWORD* type, std::uint8_t* data,
                                      DWORD* dataSize) noexcept;

}  // namespace Platform
