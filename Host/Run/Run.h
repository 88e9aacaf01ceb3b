// Loads the module, registers schedules and command points, prints a line for each call, and unloads the module.
#pragma once

#include "Host/Run/RunOptions.h"

namespace Host {

// Returns the exit code after the host was stopped. If the module cannot be loaded or refuses a registration, undoes
// all of it and throws Harbor::Failure.
[[nodiscard]] int Run(const RunOptions& options);

}  // namespace Host
