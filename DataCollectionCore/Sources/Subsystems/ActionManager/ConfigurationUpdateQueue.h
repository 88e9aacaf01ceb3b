// Carries commands from the configuration service's callback to the worker: first in, first out, unbounded.
#pragma once

#include <atomic>
#include <deque>
#include <optional>

#include "Common/Base/Lock.h"
#include "Common/Nodes/ModificationRecords.h"

namespace DataCollection::ActionManagement {

// Counts the updates of a queue, in the order in which they are posted.
using UpdateNumber = std::uint64_t;

struct QueuedUpdate {
    Harbor::IACModifySubscription* key = nullptr;  // not counted
    Harbor::ModifiedNode update;
    UpdateNumber number = 0;
};

class ConfigurationUpdateQueue {
public:
    // Wakes nobody: the update waits for the worker's next cycle. Any thread. Out of memory throws std::bad_alloc.
    void Post(Harbor::IACModifySubscription* key, Harbor::ModifiedNode update);

    // Removes and returns the oldest update; nothing if there is none. Only the worker calls it.
    [[nodiscard]] std::optional<QueuedUpdate> TakeOldest() noexcept;

    // The number of the next update that is posted. Any thread.
    UpdateNumber NextNumber() const noexcept { return nextNumber_.load(); }

private:
    Harbor::Lock lock_;  // never nested with a lock of the manager
    std::deque<QueuedUpdate> updates_;
    std::atomic<UpdateNumber> nextNumber_{0};  // changed under lock_
};

}  // namespace DataCollection::ActionManagement
