// Carries commands from the configuration service's callback to the worker: first in, first out, unbounded.
#pragma once

#include <deque>

#include "Common/Base/Lock.h"
#include "Common/Nodes/ModificationRecords.h"

namespace DataCollection::ActionManagement {

class ConfigurationUpdateQueue {
public:
    // Any thread. Wakes nobody: the entry waits for the worker's next cycle. The key isn't counted.
    void Post(Harbor::IACModifySubscription* key, Harbor::ModifiedNode update);

    // Takes the oldest entry out. False, with nothing written, if there is none. The worker alone calls it.
    bool Peek(Harbor::IACModifySubscription*& key, Harbor::ModifiedNode& update);

private:
    struct QueuedUpdate {
        Harbor::IACModifySubscription* key;
        Harbor::ModifiedNode update;
    };

    Harbor::Lock lock_;  // never nested with a lock of the manager
    std::deque<QueuedUpdate> updates_;
};

}  // namespace DataCollection::ActionManagement
