// The command point of a forced action.
#pragma once

#include "Harbor/Types.h"

namespace DataCollection::ActionManagement {

// Names the path "\Commands\ManagedObjectsDataCollectionCommand\<ParentName>\<LeafName>" of the configuration service.
struct ForcedActionConfig {
    Harbor::WideString LeafName;
    Harbor::WideString ParentName;
    bool WithOptionBit0;  // sets bit 0 of the watch's options at the configuration service
};

}  // namespace DataCollection::ActionManagement
