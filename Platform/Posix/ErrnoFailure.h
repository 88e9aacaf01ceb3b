// Failures whose reason is in errno.
#pragma once

#include <cerrno>

#include "ErrnoCodes.h"
#include "Failure.h"

namespace Platform::Posix {

using Common::Fail;
using Common::OrOutOfMemory;

// Sets the last error and the system's own error that caused it.
void SetLastErrorAndErrno(DWORD code, int errorNumber) noexcept;

// Sets the last error from errno, to `code` if that is more exact. Returns `result`.
template <class Result>
Result FailByErrno(DWORD code, Result result) noexcept {
    SetLastErrorAndErrno(code, errno);
    return result;
}
template <class Result>
Result FailByErrno(Result result) noexcept {
    return FailByErrno(Win32FromErrno(errno), result);
}

}  // namespace Platform::Posix
