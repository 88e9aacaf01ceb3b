#include "ErrnoFailure.h"

namespace Platform {

namespace {

constinit thread_local DWORD LastError = ERROR_SUCCESS;
constinit thread_local int LastErrno = 0;  // of the same failure, or 0

}  // namespace

DWORD GetLastError() noexcept {
    return LastError;
}

void SetLastError(DWORD code) noexcept {
    LastError = code;
    LastErrno = 0;
}

int _get_errno(int* value) noexcept {
    *value = LastErrno;
    return 0;
}

void Posix::SetLastErrorAndErrno(DWORD code, int errorNumber) noexcept {
    LastError = code;
    LastErrno = errorNumber;
}

}  // namespace Platform
