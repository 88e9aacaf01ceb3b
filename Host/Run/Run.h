// The host at its work: loads the module, registers what was asked for, shows each call, and leaves nothing behind.
#pragma once

#include "Host/Run/RunOptions.h"

namespace Host {

// Gives the exit code. What can't be begun is thrown as CallFailure, with all that was begun undone.
[[nodiscard]] int Run(const RunOptions& options);

}  // namespace Host
