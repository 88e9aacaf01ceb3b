// The regular actions that are not yet found disposed, in the order of their creation.
#pragma once

#include <vector>

#include "Subsystems/ActionManager/RegistryLock.h"
#include "Subsystems/ActionManager/TimedAction.h"

namespace DataCollection::ActionManagement {

class RegularActionRegistry {
public:
    // Out of memory throws std::bad_alloc and adds nothing.
    void Add(TimedAction action, RegistryProof);

    // Removes the actions that no subscription holds any more.
    void EraseDisposed(RegistryProof) noexcept;

    // Marks the actions that are due at `now`, and notes `now` as their last triggering.
    void MarkDue(const TimePoint& now, RegistryProof) noexcept;

private:
    // Two arrays in step: an idle cycle reads only the first one.
    std::vector<TimePoint> dueFrom_;
    std::vector<TimedAction> actions_;
};

}  // namespace DataCollection::ActionManagement
