#include "Platform/Errors.h"

#include "Native.h"

namespace Platform {

DWORD GetLastError() noexcept {
    return ::GetLastError();
}

void SetLastError(DWORD code) noexcept {
    ::SetLastError(code);
}

}  // namespace Platform
