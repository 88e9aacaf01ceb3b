// Asks the module's trigger strategies about a change between two trees.
#pragma once

#include "Host/Options.h"

namespace Host {

// Prints each strategy's answer and reason. Gives the exit code: success if the comparison of the items triggers.
[[nodiscard]] int Compare(const CompareOptions& options);

}  // namespace Host
