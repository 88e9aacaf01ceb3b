// Where the files of loaded code lie, by the kernel's account: absolute, whatever path they were loaded by and whatever
// the working directory has become.
#pragma once

#include <string>

#include "Platform/Modules.h"

namespace Platform::Posix {

// These give UTF-8 and throw std::bad_alloc. A file that was deleted or replaced since keeps the path it had.
std::string MainModulePath();
// With the separator behind it.
std::string MainModuleDirectory();
// Empty if no library is loaded at that address.
std::string LibraryPath(HMODULE module);

}  // namespace Platform::Posix
