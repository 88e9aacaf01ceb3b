// The command `settings`: shows the settings of the module.
#pragma once

#include <string>

#include "Host/Base/OutputFormat.h"

namespace Host {

struct SettingsOptions {
    std::string modulePath;
    OutputFormat format = OutputFormat::Text;
};

// Loads the module, prints each of its settings with its value and where that comes from, and the path of its log.
// Returns the exit code.
[[nodiscard]] int ShowSettings(const SettingsOptions& options);

}  // namespace Host
