// The command `log`: shows a log of the module.
#pragma once

#include "Host/Log/LogOptions.h"

namespace Host {

// Returns the exit code. Input that is not valid is reported on standard error and does not end the reading; if nothing
// in it is a log, BadInput is thrown at the end. The memory in use does not grow with the log.
[[nodiscard]] int ShowLog(const LogOptions& options);

}  // namespace Host
