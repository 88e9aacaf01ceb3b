// Paths in the form of this system.
#pragma once

#include <string>

#include "Platform/Types.h"

namespace Platform::Posix {

// Returns the path in UTF-8 with "/" as its separator and without a drive letter; empty for null. Throws
// std::bad_alloc.
std::string NativePath(const WideChar* path);

}  // namespace Platform::Posix
