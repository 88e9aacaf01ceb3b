#include "Platform/Errors.h"

namespace Platform {

namespace {

constinit thread_local DWORD lastError = ERROR_SUCCESS;

}  // namespace

DWORD GetLastError() noexcept {
    return lastError;
}

void SetLastError(DWORD code) noexcept {
    lastError = code;
}

}  // namespace Platform
