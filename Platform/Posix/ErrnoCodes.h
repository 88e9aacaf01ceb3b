// What the system's error numbers are called by the functions of the layer.
#pragma once

#include "Platform/Types.h"

namespace Platform::Posix {

// The code that the same failure has on Windows; ERROR_GEN_FAILURE for a number that has none here.
DWORD Win32FromErrno(int errorNumber) noexcept;

}  // namespace Platform::Posix
