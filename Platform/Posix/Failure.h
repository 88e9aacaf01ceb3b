// The failing ends of the layer's functions.
#pragma once

#include <cerrno>
#include <exception>

#include "ErrnoCodes.h"
#include "Platform/Errors.h"

namespace Platform::Posix {

// Leaves `code` as the last error and gives `result`.
template <class Result>
Result Fail(DWORD code, Result result) noexcept {
    SetLastError(code);
    return result;
}

template <class Result>
Result FailByErrno(Result result) noexcept {
    return Fail(Win32FromErrno(errno), result);
}

// Gives what `body` gives. Whatever it throws stands for memory that ran out: the standard library throws nothing else
// at the texts and containers that are handled here.
template <class Result, class Body>
Result OrOutOfMemory(Result failure, Body body) noexcept {
    try {
        return body();
    } catch (const std::exception&) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY, failure);
    }
}

}  // namespace Platform::Posix
