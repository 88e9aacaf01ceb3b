// How nodes hang together and how long they live.
//
// A node is held while handles to it or to nodes below it are open: its count has one for each handle and one for
// each held child. So every operation touches the node and at most its parent, and a root whose count falls to 0 has
// no handle anywhere in its tree, which then goes as a whole.
//
// Every function may be called on any thread; the caller has an open handle to each node that it passes. A function
// that gives a handle has counted it.
#pragma once

#include <memory>
#include <shared_mutex>
#include <string_view>

#include "Harbor/ResultCodes.h"
#include "NodeFabric/NodeFabric.h"

namespace NodeFabric {

using Node = AcnNodeOpaque;

[[nodiscard]] AcnHandle CreateRoot(std::u16string_view name, std::u16string_view type);
[[nodiscard]] AcnHandle CloneTree(const Node& source, std::uint32_t depth);

[[nodiscard]] AcnHandle Duplicate(Node& node) noexcept;
void Close(Node& node) noexcept;
[[nodiscard]] std::uint64_t OpenHandleCount() noexcept;

// Null if there is none.
[[nodiscard]] AcnHandle OpenParent(const Node& node);
[[nodiscard]] AcnHandle OpenChild(const Node& node, std::uint64_t index);
[[nodiscard]] AcnHandle OpenChild(const Node& node, std::u16string_view name);

[[nodiscard]] std::uint64_t ChildCount(const Node& node);
[[nodiscard]] Harbor::WideString FullPath(const Node& node);

[[nodiscard]] Harbor::HRESULT AppendChild(Node& parent, Node& child);
[[nodiscard]] Harbor::HRESULT RemoveChild(Node& parent, Node& child);

// For walks. While the lock is held no parent and no children change anywhere. Don't call out and don't close handles
// under it. OpenLocked opens a node under the lock; the caller has a handle to it or to its parent.
[[nodiscard]] std::shared_lock<std::shared_mutex> LockStructure();
[[nodiscard]] AcnHandle OpenLocked(Node& node) noexcept;

struct CloseDeleter {
    void operator()(Node* node) const noexcept { Close(*node); }
};
using OpenNode = std::unique_ptr<Node, CloseDeleter>;

}  // namespace NodeFabric
