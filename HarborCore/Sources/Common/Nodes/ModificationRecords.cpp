#include "Common/Nodes/ModificationRecords.h"

namespace Harbor {
namespace {

constexpr WideChar FilterType[] = u"FilterByPath";
constexpr WideChar NodePathAttribute[] = u"NodePath";
constexpr WideChar IsParentAttribute[] = u"IsParent";
constexpr WideChar MaxDepthAttribute[] = u"MaxDepth";
constexpr WideChar ModifiedNodePathAttribute[] = u"ModifiedNodePath";
constexpr WideChar ChangesMaskAttribute[] = u"ChangesMask";

}  // namespace

FilterByPathNode::FilterByPathNode(const TextRef& path, bool isParent, std::int64_t maxDepth) {
    Create(nullptr, FilterType);
    SetPath(path, isParent);
    SetMaxDepth(maxDepth);
}

void FilterByPathNode::SetPath(const TextRef& path, bool isParent) {
    SetText(NodePathAttribute, path.Data(), static_cast<std::uint32_t>(path.Length()));
    SetBool(IsParentAttribute, isParent);
}

void FilterByPathNode::SetMaxDepth(std::int64_t depth) {
    SetInt64(MaxDepthAttribute, depth);
}

ModifiedNode::ModifiedNode(AcnHandle notification) {
    if (notification == nullptr) ThrowError(E_POINTER);
    const ACNode source = ACNode::Borrow(notification);
    path = source.GetText(ModifiedNodePathAttribute);
    mask = static_cast<std::uint32_t>(source.GetInt64(ChangesMaskAttribute));
    node = source.FindChild(std::uint64_t{0});
}

}  // namespace Harbor
