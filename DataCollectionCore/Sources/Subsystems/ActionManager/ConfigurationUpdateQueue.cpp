#include "Subsystems/ActionManager/ConfigurationUpdateQueue.h"

#include "Common/Logging/FunctionTrace.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

void ConfigurationUpdateQueue::Post(IACModifySubscription* key, ModifiedNode update) {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ConfigurationUpdateQueue::Post");
    const LockGuard guard(lock_);
    updates_.push_back({key, std::move(update)});
}

bool ConfigurationUpdateQueue::Peek(IACModifySubscription*& key, ModifiedNode& update) {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionManagement::ConfigurationUpdateQueue::Peek");
    const LockGuard guard(lock_);
    if (updates_.empty()) return false;
    TRY_LOG(Dbg, u"ConfigurationUpdateQueue::Peek modification");
    key = updates_.front().key;
    update = std::move(updates_.front().update);
    updates_.pop_front();
    return true;
}

}  // namespace DataCollection::ActionManagement
