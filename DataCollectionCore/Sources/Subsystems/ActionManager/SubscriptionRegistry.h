// The subscriptions that are not yet found dead, in the order of their creation.
#pragma once

#include <vector>

#include "Subsystems/ActionManager/ActionSubscription.h"
#include "Subsystems/ActionManager/RegistryLock.h"

namespace DataCollection::ActionManagement {

class SubscriptionRegistry {
public:
    // A living subscription as the worker goes through them: it holds no reference.
    struct Living {
        const StateWord* state;
        IActionSubscriptionControl* subscription;
    };
    using Snapshot = std::vector<Living>;

    // Out of memory throws std::bad_alloc and adds nothing.
    void Add(Harbor::ComponentPtr<IActionSubscriptionControl> subscription, const StateWord* state, RegistryProof);

    // Releases the dead and brings the snapshot up to date. Only the worker calls it; it allocates nothing.
    void Update(RegistryProof) noexcept;

    // The living at the last Update. Only the worker reads it, and it may do so without the lock, since its pointers
    // stay valid until the next Update: only that removes a subscription.
    const Snapshot& Latest() const noexcept { return snapshot_; }

private:
    struct Entry {
        Harbor::ComponentPtr<IActionSubscriptionControl> subscription;
        const StateWord* state = nullptr;
    };

    void RemoveDead() noexcept;
    void BringSnapshotUpToDate() noexcept;

    std::vector<Entry> entries_;               // guarded by the registry lock
    Snapshot room_;                            // guarded by the registry lock: empty, for a snapshot that has to grow
    std::size_t snapshotCapacity_ = 0;         // guarded by the registry lock
    std::uint64_t detachmentsAtLastLook_ = 0;  // the worker's
    Snapshot snapshot_;                        // the worker's
};

}  // namespace DataCollection::ActionManagement
