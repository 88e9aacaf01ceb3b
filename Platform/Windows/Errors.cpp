#include "Platform/Errors.h"

#include "Native.h"

namespace Platform {

DWORD GetLastError() noexcept {
    return ::GetLastError();
}

void SetLastError(DWORD code) noexcept {
    ::SetLastError(code);
}

int _get_errno(int* value) noexcept {
    *value = 0;
    return 0;
}

}  // namespace Platform
