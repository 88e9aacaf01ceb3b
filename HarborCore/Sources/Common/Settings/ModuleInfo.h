// Where this module and its process lie, and the expansion of environment references. "This module" is the binary into
// which this code was linked. System failures are thrown as HRX.
#pragma once

#include "Harbor/Types.h"
#include "Platform/Modules.h"

namespace Harbor {

[[nodiscard]] Platform::HMODULE OwnModule();
[[nodiscard]] bool IsMainModule(Platform::HMODULE module) noexcept;

// Null means the process's main module.
[[nodiscard]] WideString ModuleFilePath(Platform::HMODULE module);
// With its trailing separator.
[[nodiscard]] WideString ModuleDirectory(Platform::HMODULE module);
[[nodiscard]] WideString ModuleName(Platform::HMODULE module, bool stripExtension);

// Replaces %NAME% references; an unknown name stays as it stands.
[[nodiscard]] WideString ExpandEnvironment(const WideString& text);

}  // namespace Harbor
