// Paths as this system takes them.
#pragma once

#include <string>

#include "Platform/Types.h"

namespace Platform::Posix {

// The path in UTF-8 with "/" as its separator and without a drive letter; empty for null. Throws std::bad_alloc.
std::string NativePath(const WideChar* path);

}  // namespace Platform::Posix
