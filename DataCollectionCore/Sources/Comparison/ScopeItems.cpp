#include "Comparison/ScopeItems.h"

#include "Comparison/NodeComparison.h"

namespace DataCollection {

using namespace Harbor;

namespace {

constexpr WideChar ScopeItemsName[] = u"ScopeItems";

}  // namespace

ScopeItemComparison CompareScopeItems(const ACNode& oldTree, const ACNode& newTree) {
    const ACNode oldItems = oldTree.FindChild(ScopeItemsName);
    const ACNode newItems = newTree.FindChild(ScopeItemsName);
    if (!newItems) return {.difference = ScopeItemDifference::NewHasNone};
    if (!oldItems) return {.difference = ScopeItemDifference::OnlyNewHas};
    ScopeItemComparison comparison{.itemCount = newItems.GetChildCount()};
    for (std::uint64_t i = 0; i < comparison.itemCount; ++i) {
        comparison.newItem = newItems.GetChild(i);
        comparison.oldItem = oldItems.FindChild(comparison.newItem.GetName(AcnOwnName).c_str());
        if (!comparison.oldItem) {
            comparison.difference = ScopeItemDifference::ItemAdded;
            return comparison;
        }
        if (!NodesEqual(comparison.newItem, comparison.oldItem, NodeLevel::Top)) {
            comparison.difference = ScopeItemDifference::ItemChanged;
            return comparison;
        }
    }
    return comparison;
}

}  // namespace DataCollection
