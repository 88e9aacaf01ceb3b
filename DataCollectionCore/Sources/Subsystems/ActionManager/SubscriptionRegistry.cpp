#include "Subsystems/ActionManager/SubscriptionRegistry.h"

#include "Common/Failures/CodeOfCall.h"
#include "Subsystems/ActionManager/CycleTrace.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

void SubscriptionRegistry::Add(ComponentPtr<IActionSubscriptionControl> subscription, const StateWord* state,
                               RegistryProof) {
    entries_.Add({std::move(subscription), state});
}

void SubscriptionRegistry::Update(RegistryProof) noexcept {
    const std::uint64_t detachments = ActionSubscription::Detachments();
    if (IsCycleTraced() || detachments != detachmentsAtLastLook_) {
        detachmentsAtLastLook_ = detachments;
        RemoveDead();
    }
    living_ = entries_.Size();
}

void SubscriptionRegistry::RemoveDead() noexcept {
    const bool isTraced = IsCycleTraced();
    entries_.Retain([&](const Entry& entry) {
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
}

}  // namespace DataCollection::ActionManagement
