// Carries commands from the configuration service's callback to the worker: first in, first out, unbounded.
#pragma once

#include <deque>
#include <optional>

#include "Common/Base/Lock.h"
#include "Common/Nodes/ModificationRecords.h"

namespace DataCollection::ActionManagement {

struct QueuedUpdate {
    Harbor::IACModifySubscription* key = nullptr;  // not counted
    Harbor::ModifiedNode update;
    std::uint64_t registrationsBefore = 0;  // how many pairs had been registered when its report began
};

class ConfigurationUpdateQueue {
public:
    // Wakes nobody: the update waits for the worker's next cycle. Any thread. Out of memory throws std::bad_alloc.
    void Post(QueuedUpdate update);

    // Removes and returns the oldest update; nothing if there is none. Only the worker calls it.
    [[nodiscard]] std::optional<QueuedUpdate> TakeOldest() noexcept;

private:
    Harbor::Lock lock_;  // never nested with a lock of the manager
    std::deque<QueuedUpdate> updates_;
};

}  // namespace DataCollection::ActionManagement
