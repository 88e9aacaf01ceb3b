// The settings of the module, by the code that the module reads them with.
#pragma once

#include <string>
#include <vector>

#include "Platform/Modules.h"

namespace Host {

// Texts are in UTF-8.
struct ModuleSetting {
    std::string section;
    std::string key;
    std::string value;   // the one in effect
    std::string source;  // the variable or file that holds it, or "default" and why
};

// Returns all settings of a loaded module, with the values that they have in this process now. Failures are thrown as
// Harbor::Failure or Harbor::HRX.
[[nodiscard]] std::vector<ModuleSetting> SettingsOf(Platform::HMODULE module);

// Returns the path of the log that a loaded module writes, with the separators of this system. Failures as above.
[[nodiscard]] std::string LogFileOf(Platform::HMODULE module);

}  // namespace Host
