// A node as text for the log, hidden attributes masked:
//
//     ACNode[0x00007F0012345678]:
//     <node name="Start" ...>
//
// Dumps run on the thread of the log statement, and only when its severity is enabled.
#pragma once

#include "Common/Base/WideStream.h"
#include "Common/Nodes/ACNode.h"

namespace Harbor {

// What a log statement prints: the node, or a masked clone, down to a depth.
struct ACNodeLogView {
    // `deep` means the whole subtree, otherwise the node alone. The node is borrowed.
    ACNodeLogView(const ACNode& source, bool deep);

    ACNode node;
    std::uint32_t depth;
};

// "ACNode[<null>]" for an empty node. Failures of the store are thrown as HRX.
[[nodiscard]] WideString DumpNode(const ACNodeLogView& view);

// Inserts the dump of the whole subtree.
WideStream& operator<<(WideStream& stream, const ACNode& node);

}  // namespace Harbor
