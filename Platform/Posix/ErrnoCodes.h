// The codes of the system's error numbers.
#pragma once

#include "Platform/Types.h"

namespace Platform::Posix {

// Returns the code that the same failure has on Windows, or ERROR_GEN_FAILURE for a number that is not in the table.
DWORD Win32FromErrno(int errorNumber) noexcept;

}  // namespace Platform::Posix
