// The filter of a watch at the configuration service, and the changes that the service reports.
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

// One reported change. It owns what it holds.
struct ModifiedNode {
    ModifiedNode() = default;
    // Reads a notification node, which is borrowed. Throws HRX with E_POINTER for null and with NOT_FOUND if the path
    // or the mask is missing. Of a mask of more than 32 bits the low ones are kept.
    explicit ModifiedNode(AcnHandle notification);

    ModifiedNode(ModifiedNode&&) noexcept = default;
    ModifiedNode& operator=(ModifiedNode&&) noexcept = default;

    WideString path;
    std::uint32_t mask = 0;
    ACNode node;  // the changed node; empty if the notification has no child
};

// Calls the visitor with a ModifiedNode& for each notification of one report, in order. The visitor may move from it.
// Throws HRX with E_POINTER for null, and passes on what GetNodeEnumerator, a malformed notification or the visitor
// throws; the remaining notifications are then not visited.
template <class Visitor>
void ForEachModifiedNode(IACNodeModifyEnum* modifications, Visitor visitor) {
    if (modifications == nullptr) ThrowError(E_POINTER);
    ComponentPtr<IACNodeEnumerator> enumerator;
    ThrowIfFailed(modifications->GetNodeEnumerator(enumerator.Address()));
    enumerator->Reset();
    // The enumerator reports its end and a failure in the same way.
    for (ACNode notification; enumerator->Next(notification.Receive()) == 0;) {
        ModifiedNode record(notification.Handle());
        visitor(record);
    }
}

}  // namespace Harbor
