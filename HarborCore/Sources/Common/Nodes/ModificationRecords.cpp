#include "Common/Nodes/ModificationRecords.h"

namespace Harbor {

FilterByPathNode::FilterByPathNode(const TextRef& path, WatchedNodes nodes, std::int64_t maxDepth) {
    Create(nullptr, WatchFilter::NodeType);
    SetPath(path, nodes);
    SetMaxDepth(maxDepth);
}

void FilterByPathNode::SetPath(const TextRef& path, WatchedNodes nodes) {
    SetText(WatchFilter::NodePath, path.Data(), static_cast<std::uint32_t>(path.Length()));
    SetBool(WatchFilter::IsParent, nodes == WatchedNodes::BelowPath);
}

void FilterByPathNode::SetMaxDepth(std::int64_t depth) {
    SetInt64(WatchFilter::MaxDepth, depth);
}

ModifiedNode::ModifiedNode(AcnHandle notification) {
    if (notification == nullptr) ThrowError(E_POINTER);
    const ACNode source = ACNode::Borrow(notification);
    path = source.GetText(ChangeNotification::ModifiedNodePath);
    mask = static_cast<std::uint32_t>(source.GetInt64(ChangeNotification::ChangesMask));
    node = source.FindChild(std::uint64_t{0});
}

}  // namespace Harbor
