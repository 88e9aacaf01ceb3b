#include "Platform/Environment.h"

#include "Native.h"

namespace Platform {

using Windows::Native;

DWORD GetEnvironmentVariableW(const WideChar* name, WideChar* buffer, DWORD size) noexcept {
    return ::GetEnvironmentVariableW(Native(name), Native(buffer), size);
}

DWORD ExpandEnvironmentStringsW(const WideChar* source, WideChar* buffer, DWORD size) noexcept {
    return ::ExpandEnvironmentStringsW(Native(source), Native(buffer), size);
}

}  // namespace Platform
