// Words for bare codes: from message modules, from the system, and remembered.
#pragma once

#include "Harbor/Types.h"

namespace Harbor {

// The text of a code, without full stop or line break at its end; "<no description>" if nobody knows it. Any thread.
WideString DescribeError(std::uint32_t code);

}  // namespace Harbor
