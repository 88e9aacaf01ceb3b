// Shows a log of the module.
#pragma once

#include "Host/Log/LogOptions.h"

namespace Host {

// Gives the exit code. Bad input is told on standard error, and reading goes on; memory doesn't grow with the log.
[[nodiscard]] int ShowLog(const LogOptions& options);

}  // namespace Host
