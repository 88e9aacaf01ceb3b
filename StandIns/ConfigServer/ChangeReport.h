// The report of a change, as a callback receives it.
#pragma once

#include "Common/Nodes/ACNode.h"
#include "Harbor/ComponentPtr.h"
#include "Harbor/ConfigService.h"

namespace ConfigServer {

// Returns the report of one changed node in its present state. `path` is its full path and has at least two elements.
// Failures are thrown as HRX or std::bad_alloc.
[[nodiscard]] Harbor::ComponentPtr<Harbor::IACNodeModifyEnum> ReportChange(const Harbor::ACNode& changed,
                                                                           const Harbor::WideString& path,
                                                                           std::int64_t changes);

}  // namespace ConfigServer
