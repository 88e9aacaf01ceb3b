#include "Platform/Registry.h"

#include "Native.h"

namespace Platform {

using Windows::Native;

namespace {

::HKEY NativeKey(HKEY key) noexcept {
    return reinterpret_cast<::HKEY>(key);
}

}  // namespace

LONG RegOpenKeyExW(HKEY root, const WideChar* path, DWORD options, DWORD access, HKEY* key) noexcept {
    return ::RegOpenKeyExW(NativeKey(root), Native(path), options, access, reinterpret_cast<::HKEY*>(key));
}

LONG RegCloseKey(HKEY key) noexcept {
    return ::RegCloseKey(NativeKey(key));
}

LONG RegEnumValueW(HKEY key, DWORD index, WideChar* name, DWORD* nameLength, DWORD* reserved, DWORD* type,
                   std::uint8_t* data, DWORD* dataSize) noexcept {
    return ::RegEnumValueW(NativeKey(key), index, Native(name), Native(nameLength), Native(reserved), Native(type),
                           data, Native(dataSize));
}

LONG RegQueryValueExW(HKEY key, const WideChar* name, DWORD* reserved, DWORD* type, std::uint8_t* data,
                      DWORD* dataSize) noexcept {
    return ::RegQueryValueExW(NativeKey(key), Native(name), Native(reserved), Native(type), data, Native(dataSize));
}

}  // namespace Platform
