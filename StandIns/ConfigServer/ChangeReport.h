// What a callback gets to see of a change.
#pragma once

#include "Common/Nodes/ACNode.h"
#include "Harbor/ComponentPtr.h"
#include "Harbor/ConfigService.h"

namespace ConfigServer {

// The report of one changed node, as it is now. `path` is its full path, of two elements at least. Failures are thrown
// as HRX.
[[nodiscard]] Harbor::ComponentPtr<Harbor::IACNodeModifyEnum> ReportChange(const Harbor::ACNode& changed,
                                                                           const Harbor::WideString& path,
                                                                           std::int64_t changes);

}  // namespace ConfigServer
