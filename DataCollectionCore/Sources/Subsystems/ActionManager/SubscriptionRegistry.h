// The subscriptions that are not yet found dead, in the order of their creation.
#pragma once

#include "Subsystems/ActionManager/ActionSubscription.h"
#include "Subsystems/ActionManager/ChunkedList.h"
#include "Subsystems/ActionManager/RegistryLock.h"

namespace DataCollection::ActionManagement {

class SubscriptionRegistry {
public:
    // Out of memory throws std::bad_alloc and adds nothing.
    void Add(Harbor::ComponentPtr<IActionSubscriptionControl> subscription, const StateWord* state, RegistryProof);

    // Releases the dead and notes how many are living. Only the worker calls it; it allocates nothing.
    void Update(RegistryProof) noexcept;

    // Calls visit(state, subscription) for each that was living at the last Update. Only the worker calls it, and it
    // may do so without the lock: only Update removes a subscription, and one that is added meanwhile is left out.
    template <class Visit>
    void ForEachLiving(Visit visit) {
        entries_.ForFirst(living_, [&](const Entry& entry) { visit(*entry.state, *entry.subscription.Get()); });
    }

private:
    struct Entry {
        Harbor::ComponentPtr<IActionSubscriptionControl> subscription;
        const StateWord* state = nullptr;
    };

    void RemoveDead() noexcept;

    ChunkedList<Entry> entries_;               // changed under the registry lock
    std::size_t living_ = 0;                   // the worker's
    std::uint64_t detachmentsAtLastLook_ = 0;  // the worker's
};

}  // namespace DataCollection::ActionManagement
