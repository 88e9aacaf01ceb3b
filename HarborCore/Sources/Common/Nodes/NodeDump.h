// Prints a node as text for the log, with hidden attributes masked:
//
//     ACNode[0x00007F0012345678]:
//     <node name="Start" ...>
//
// A dump is made on the thread of the log statement, and only if its severity is enabled.
#pragma once

#include "Common/Base/WideStream.h"
#include "Common/Nodes/ACNode.h"

namespace Harbor {

// How much of a tree a dump shows.
enum class DumpDepth { NodeOnly, WholeTree };

// What a log statement prints: the node or a masked clone, and the number of levels to print below it.
struct ACNodeLogView {
    // Masks `source`. Failures of the store, and a setting of hidden attributes that cannot be used, are thrown as HRX.
    ACNodeLogView(const ACNode& source, DumpDepth dumpDepth);

    ACNode node;
    std::uint32_t depth;
};

// Returns "ACNode[<null>]" for an empty node. Failures of the store are thrown as HRX.
[[nodiscard]] WideString DumpNode(const ACNodeLogView& view);

// Inserts the dump of the whole subtree.
WideStream& operator<<(WideStream& stream, const ACNode& node);

}  // namespace Harbor
