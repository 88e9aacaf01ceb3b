// The pairs of forced actions, each with the watch that the configuration service created for it as its key.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "Harbor/ConfigService.h"
#include "Subsystems/ActionManager/ConfigurationUpdateQueue.h"
#include "Subsystems/ActionManager/ForcedActions.h"
#include "Subsystems/ActionManager/RegistryLock.h"

namespace DataCollection::ActionManagement {

struct ForcedEntry {
    Harbor::ComponentPtr<Harbor::IACModifySubscription> subscription;  // the watch; its address is the key
    std::shared_ptr<ForcedActions> actions;
    // Counts the registered pairs, this one included. A command whose report began when fewer were registered was
    // meant for an earlier watch that had the same address.
    std::uint64_t number = 0;
};

class ForcedActionRegistry {
public:
    // What a removal took out of the registry. It is released outside the registry lock, since the service may wait in
    // its last Release for a thread that registers.
    class Removed {
        friend class ForcedActionRegistry;
        struct Pair {
            ForcedEntry entry;
            Harbor::ComponentPtr<Harbor::IACConfigService> service;
        };
        std::vector<Pair> pairs_;
    };

    // An entry of the same watch stays, and nothing is added. Out of memory throws std::bad_alloc and adds nothing.
    void Add(const ForcedEntry& entry, RegistryProof);

    // Removes the pairs that no subscription holds any more, and their watches at the configuration service. What a
    // removal needs is reserved before it: out of memory throws std::bad_alloc, and the pairs that are left are removed
    // by the next call.
    void EraseDisposed(Removed& removed, RegistryProof);

    // The pair for a command, or null: the watch has none, or the command was meant for an earlier watch of that
    // address.
    const ForcedActions* Find(const QueuedUpdate& update, RegistryProof) const noexcept;

    // Releases all watches. No other thread uses the registry any more.
    void Clear() noexcept { entries_.clear(); }

private:
    std::unordered_map<Harbor::IACModifySubscription*, ForcedEntry> entries_;
};

}  // namespace DataCollection::ActionManagement
