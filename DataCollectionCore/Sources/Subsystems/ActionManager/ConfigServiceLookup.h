// The configuration service, asked for anew for each use.
#pragma once

#include "Harbor/ComponentPtr.h"
#include "Harbor/ConfigService.h"

namespace DataCollection::ActionManagement {

// A failure of the broker is thrown as HRX.
[[nodiscard]] Harbor::ComponentPtr<Harbor::IACConfigService> GetConfigService();

}  // namespace DataCollection::ActionManagement
