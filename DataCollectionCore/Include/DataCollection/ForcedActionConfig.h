// The command point of a forced action.
#pragma once

#include "Harbor/Types.h"

namespace DataCollection::ActionManagement {

// The node of the configuration service below which all command points are.
inline constexpr Harbor::WideChar CommandPointRoot[] = u"\\Commands\\ManagedObjectsDataCollectionCommand";

// Names the command point with the path CommandPointRoot + "\<ParentName>\<LeafName>".
struct ForcedActionConfig {
    Harbor::WideString LeafName;
    Harbor::WideString ParentName;
    bool WithOptionBit0 = false;  // sets bit 0 of the watch's options at the configuration service
};

}  // namespace DataCollection::ActionManagement
