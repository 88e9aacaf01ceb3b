// Descriptions of codes, from message modules and from the system. Each description is cached.
#pragma once

#include "Harbor/Types.h"

namespace Harbor {

// Returns the text of a code without a full stop or line break at its end, or "<no description>" if no source has one.
// Any thread may call it.
WideString DescribeError(std::uint32_t code);

}  // namespace Harbor
