#include "Subsystems/ActionManager/ConfigurationUpdateQueue.h"

#include "Common/Logging/FunctionTrace.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

void ConfigurationUpdateQueue::Post(QueuedUpdate update) {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ConfigurationUpdateQueue::Post");
    const LockGuard guard(lock_);
    updates_.push_back(std::move(update));
}

// The log calls it by the name that its readers know.
std::optional<QueuedUpdate> ConfigurationUpdateQueue::TakeOldest() noexcept {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ConfigurationUpdateQueue::Peek");
    const LockGuard guard(lock_);
    if (updates_.empty()) return std::nullopt;
    TRY_LOG(Dbg, u"ConfigurationUpdateQueue::Peek modification");
    std::optional<QueuedUpdate> oldest(std::move(updates_.front()));
    updates_.pop_front();
    return oldest;
}

}  // namespace DataCollection::ActionManagement
