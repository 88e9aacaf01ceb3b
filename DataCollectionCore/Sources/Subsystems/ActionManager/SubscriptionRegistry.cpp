#include "Subsystems/ActionManager/SubscriptionRegistry.h"

#include "Common/Failures/CodeOfCall.h"
#include "Subsystems/ActionManager/CycleTrace.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

void SubscriptionRegistry::Add(ComponentPtr<IActionSubscriptionControl> subscription, const StateWord* state,
                               RegistryProof) {
    ReserveForOneMore(entries_);
    // The cycle must not allocate: what its snapshot needs is reserved here, in step with the registry.
    if (std::max(snapshotCapacity_, room_.capacity()) < entries_.capacity()) room_.reserve(entries_.capacity());
    entries_.push_back({std::move(subscription), state});
}

void SubscriptionRegistry::Update(RegistryProof) noexcept {
    const std::uint64_t detachments = ActionSubscription::Detachments();
    if (IsCycleTraced() || detachments != detachmentsAtLastLook_) {
        detachmentsAtLastLook_ = detachments;
        RemoveDead();
    }
    BringSnapshotUpToDate();
}

void SubscriptionRegistry::RemoveDead() noexcept {
    const bool isTraced = IsCycleTraced();
    const std::size_t sizeBefore = entries_.size();
    RetainInOrder(entries_, [&](const Entry& entry) {
        const bool isDetached = (entry.state->load() & SubscriptionState::Detached) != 0;
        if (!isTraced && !isDetached) return true;
        IActionSubscriptionControl* const subscription = entry.subscription.Get();
        bool alive = false;
        const HRES code = HRES::Unchecked(CodeOfCall([&] { return subscription->IsAlive(&alive); }));
        if (code.Failed()) TRY_LOG(Err, u"Cannot check IsAlive: " << code);
        if (alive) {
            // A busy lock counts as alive, so the next cycle must ask again.
            if (isDetached) detachmentsAtLastLook_ = ~std::uint64_t{0};
            return true;
        }
        TRY_LOG(Dbg, u"Subscription ID:'" << subscription << u"' deleting...");
        return false;
    });
    if (entries_.size() != sizeBefore) snapshot_.clear();
}

void SubscriptionRegistry::BringSnapshotUpToDate() noexcept {
    if (snapshot_.capacity() < entries_.size()) {
        room_.assign(snapshot_.begin(), snapshot_.end());
        snapshot_.swap(room_);
        Snapshot().swap(room_);  // frees the memory of the old snapshot
        snapshotCapacity_ = snapshot_.capacity();
    }
    for (std::size_t i = snapshot_.size(); i < entries_.size(); ++i) {
        snapshot_.push_back({entries_[i].state, entries_[i].subscription.Get()});
    }
}

}  // namespace DataCollection::ActionManagement
