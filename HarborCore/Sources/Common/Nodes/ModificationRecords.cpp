#include "Common/Nodes/ModificationRecords.h"

#include "Common/Logging/Log.h"

namespace Harbor {

namespace {

// Returns what `read` reads of an attribute. The code of a failure does not tell which attribute it was, but the log
// does.
template <class Read>
auto ReadRequired(const WideChar* name, Read read) {
    try {
        return read(name);
    } catch (const HRX& failure) {
        TRY_LOG(Err, u"Invalid modification. Attribute: '" << name << u"'. Reason: " << failure);
        throw;
    }
}

}  // namespace

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
    path = ReadRequired(ChangeNotification::ModifiedNodePath, [&](auto name) { return source.GetText(name); });
    mask = static_cast<std::uint32_t>(
        ReadRequired(ChangeNotification::ChangesMask, [&](auto name) { return source.GetInt64(name); }));
    node = source.FindChild(std::uint64_t{0});
}

}  // namespace Harbor
