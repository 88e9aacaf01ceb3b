// Failures whose reason is in errno.
#pragma once

#include <cerrno>

#include "ErrnoCodes.h"
#include "Failure.h"

namespace Platform::Posix {

using Common::Fail;
using Common::OrOutOfMemory;

template <class Result>
Result FailByErrno(Result result) noexcept {
    return Fail(Win32FromErrno(errno), result);
}

}  // namespace Platform::Posix
