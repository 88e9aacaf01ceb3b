// The places of this module and of its process, and the expansion of environment references. "This module" is the
// binary into which this code is linked. Failures of the system are thrown as HRX, except where a function says
// otherwise. Any thread may call these functions.
#pragma once

#include "Harbor/Types.h"
#include "Platform/Modules.h"

namespace Harbor {

// Returns the handle of this module. No reference is counted, and the handle must not be closed.
[[nodiscard]] Platform::HMODULE OwnModule();
// Returns true for the process's main module.
[[nodiscard]] bool IsMainModule(Platform::HMODULE module) noexcept;

// Whether the name of a module includes its extension. Every caller says Strip so far.
enum class Extension { Keep, Strip };

// Each of these takes null for the process's main module. The directory ends in a separator. The paths of this module
// and of the main module are those that were found at load.
[[nodiscard]] WideString ModuleFilePath(Platform::HMODULE module);
[[nodiscard]] WideString ModuleDirectory(Platform::HMODULE module);
[[nodiscard]] WideString ModuleName(Platform::HMODULE module, Extension extension);

// Replaces each %NAME% by the environment variable of that name. An unknown name is left unchanged, and so is the whole
// text if the system fails.
[[nodiscard]] WideString ExpandEnvironment(const WideString& text);

}  // namespace Harbor
