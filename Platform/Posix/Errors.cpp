#include "Platform/Errors.h"

namespace Platform {

namespace {

constinit thread_local DWORD LastError = ERROR_SUCCESS;

}  // namespace

DWORD GetLastError() noexcept {
    return LastError;
}

void SetLastError(DWORD code) noexcept {
    LastError = code;
}

}  // namespace Platform
