// The deep comparison of two configuration nodes.
#pragma once

#include "Common/Nodes/ACNode.h"

namespace DataCollection {

// Top: the full paths must be equal. Deeper: the names.
enum class NodeLevel { Top, Deeper };

// Names, attributes (in any order) and children (in the same order) are equal. Relies on the node store's giving one
// handle value for two look-ups that reach one node. Failures of the store are thrown as HRX.
[[nodiscard]] bool NodesEqual(const Harbor::ACNode& a, const Harbor::ACNode& b, NodeLevel level);

}  // namespace DataCollection
