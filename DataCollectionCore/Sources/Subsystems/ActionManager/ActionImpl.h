// The object of one action: a name, a mark that waits for delivery, and the count of the subscriptions
// that hold it. An action with no subscription counts as disposed.
#pragma once

#include "Common/Components/CComponentObject.h"
#include "DataCollection/Action.h"
#include "Subsystems/ActionManager/StateWord.h"

namespace DataCollection {

class ActionImpl : public Harbor::ComponentRoot, public IAction, public IActionControl {
public:
    static constexpr const char* Tag = "CComponentObject<class DataCollection::ActionImpl>::CComponentObject";
    using Queryable = Harbor::InterfaceList<IAction, IActionControl>;

    HRESULT GetType(GUID* type) override;
    HRESULT GetName(WideString* name) override;

    HRESULT SetNameAndType(const WideString& name, const GUID& type) override;
    HRESULT IsDisposed(bool* disposed) override;
    HRESULT OnSubscriptionAttached() override;
    HRESULT OnSubscriptionDisposed() override;
    HRESULT SetTriggered(bool triggered) override;
    HRESULT GetTriggered(bool* triggered) override;

    // SetTriggered and GetTriggered without their traces, for a step that has found that the log is off.
    void Mark(bool triggered) noexcept;
    bool IsMarked() const noexcept { return triggered_.load(); }

    // Each later mark also sets the flag Marked in `word`, a word of the module's pool. Null ends that.
    void ReportMarksTo(ActionManagement::StateWord* word) noexcept { marksWord_.store(word); }

    // Counts how often an action of this module has become disposed. As long as it does not change, no action has.
    static std::uint64_t Disposals() noexcept { return DisposalCount.load(); }

private:
    // Set once by the creator before the action is shared.
    GUID actionTypeId_{};
    WideString name_;  // empty: not set up yet

    std::atomic<std::uint32_t> attachedSubscriptions_{0};
    std::atomic<bool> triggered_{false};
    std::atomic<ActionManagement::StateWord*> marksWord_{nullptr};

    static inline constinit std::atomic<std::uint64_t> DisposalCount{0};
};

}  // namespace DataCollection
