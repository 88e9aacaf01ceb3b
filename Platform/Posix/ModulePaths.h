// The paths of loaded code as the kernel knows them: absolute, whatever path the code was loaded by and whatever the
// working directory is now.
#pragma once

#include <string>

#include "Platform/Modules.h"

namespace Platform::Posix {

// These functions return UTF-8 and throw std::bad_alloc. A file that was deleted or replaced keeps its former path.
std::string MainModulePath();
// Ends with a separator.
std::string MainModuleDirectory();
// Empty if no library is loaded at that address.
std::string LibraryPath(HMODULE module);

}  // namespace Platform::Posix
