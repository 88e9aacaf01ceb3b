// The nodes in which the configuration service is asked for a watch and in which it reports changes.
#pragma once

#include <utility>

#include "Common/Base/HRes.h"
#include "Common/Nodes/ACNode.h"
#include "Harbor/ConfigService.h"

namespace Harbor {

// Which nodes a watch covers, as the attribute IsParent of its filter says.
enum class WatchedNodes {
    PathAndBelow,  // IsParent is false: the node at the path and the nodes below it
    BelowPath      // IsParent is true: only the nodes below the path
};

// The filter of a watch. Failures of the store are thrown as HRX.
class FilterByPathNode : public ACNode {
public:
    // `maxDepth` counts the levels below the path that are watched. WatchFilter::EveryLevel means all of them.
    FilterByPathNode(const TextRef& path, WatchedNodes nodes, std::int64_t maxDepth);

    void SetPath(const TextRef& path, WatchedNodes nodes);
    void SetMaxDepth(std::int64_t depth);
};

// One reported change.
struct ModifiedNode {
    ModifiedNode() = default;
    // From a notification node, borrowed. E_POINTER for null, not found where its path or mask is missing; a mask of
    // more than 32 bits keeps the low ones.
    explicit ModifiedNode(AcnHandle notification);

    ModifiedNode(ModifiedNode&&) noexcept = default;
    ModifiedNode& operator=(ModifiedNode&&) noexcept = default;

    WideString path;
    std::uint32_t mask = 0;
    ACNode node;  // what was changed; empty if the notification had no child
};

// Walks the notifications of one report in their order. The visitor takes a ModifiedNode& and may move out of it.
template <class Visitor>
void ForEachModifiedNode(IACNodeModifyEnum* modifications, Visitor visitor) {
    if (modifications == nullptr) ThrowError(E_POINTER);
    ComponentPtr<IACNodeEnumerator> enumerator;
    ThrowIfFailed(modifications->GetNodeEnumerator(enumerator.Address()));
    enumerator->Reset();
    // An end and a failure of Next are not told apart.
    for (ACNode notification; enumerator->Next(notification.Receive()) == 0;) {
        ModifiedNode record(notification.Handle());
        visitor(record);
    }
}

}  // namespace Harbor
