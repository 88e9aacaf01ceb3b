// How the layer's own code fails.
#pragma once

#include <exception>

#include "Platform/Errors.h"

namespace Platform::Common {

// Sets the last error to `code` and returns `result`.
template <class Result>
Result Fail(DWORD code, Result result) noexcept {
    SetLastError(code);
    return result;
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

}  // namespace Platform::Common
