// How the layer's functions fail.
#pragma once

#include <cerrno>
#include <exception>

#include "ErrnoCodes.h"
#include "Platform/Errors.h"

namespace Platform::Posix {

// Sets the last error to `code` and returns `result`.
template <class Result>
Result Fail(DWORD code, Result result) noexcept {
    SetLastError(code);
    return result;
}

// Sets the last error and the system's own error behind it.
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

// Returns the result of `body`. Every exception is treated as lack of memory: the standard library throws nothing else
// for the texts and containers that are used here.
template <class Result, class Body>
Result OrOutOfMemory(Result failure, Body body) noexcept {
    try {
        return body();
    } catch (const std::exception&) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY, failure);
    }
}

}  // namespace Platform::Posix
