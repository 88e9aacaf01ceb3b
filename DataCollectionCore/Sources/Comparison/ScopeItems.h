// The comparison of the items of two configuration trees, the children of their node "ScopeItems".
#pragma once

#include "Common/Nodes/ACNode.h"

namespace DataCollection {

enum class ScopeItemDifference {
    None,         // every new item is in the old tree, unchanged
    NewHasNone,   // the new tree has no "ScopeItems"
    OnlyNewHas,   // the new tree has "ScopeItems", the old one does not
    ItemAdded,    // an item of the new tree is missing in the old one
    ItemChanged,  // an item differs from the old item of its name
};

struct ScopeItemComparison {
    ScopeItemDifference difference = ScopeItemDifference::None;
    std::uint64_t itemCount = 0;  // of the new tree
    Harbor::ACNode newItem{};     // ItemAdded and ItemChanged: the first item that differs
    Harbor::ACNode oldItem{};     // ItemChanged: its counterpart
};

// Compares the new items, in their order, with the old items of the same names and stops at the first difference. Items
// that only the old tree has, and the order of the items, are not compared. A failure of the node store is thrown as
// HRX.
[[nodiscard]] ScopeItemComparison CompareScopeItems(const Harbor::ACNode& oldTree, const Harbor::ACNode& newTree);

}  // namespace DataCollection
