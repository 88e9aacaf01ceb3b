// The structure of trees and the lifetime of nodes.
//
// A node is held while handles to it or to nodes below it are open: it counts one for each handle and one for each held
// child. So every operation changes the node and at most its parent. If the count of a root becomes 0, no handle to its
// tree is open, and the whole tree is deleted.
//
// Any thread may call any function. The caller must have an open handle to each node that it passes. Handles that are
// returned are counted: the caller must close them.
#pragma once

#include <memory>
#include <shared_mutex>
#include <string_view>

#include "Common/Base/Lock.h"
#include "Harbor/ResultCodes.h"
#include "NodeFabric/NodeFabric.h"

namespace NodeFabric {

using Node = AcnNodeOpaque;

[[nodiscard]] AcnHandle CreateRoot(std::u16string_view name, std::u16string_view type);
[[nodiscard]] AcnHandle CloneTree(const Node& source, std::uint32_t depth);

[[nodiscard]] AcnHandle Duplicate(Node& node) noexcept;
void Close(Node& node) noexcept;
[[nodiscard]] std::uint64_t OpenHandleCount() noexcept;

// Return null if there is none.
[[nodiscard]] AcnHandle OpenParent(const Node& node);
[[nodiscard]] AcnHandle OpenChild(const Node& node, std::uint64_t index);
[[nodiscard]] AcnHandle OpenChild(const Node& node, std::u16string_view name);

[[nodiscard]] std::uint64_t ChildCount(const Node& node);
[[nodiscard]] Harbor::WideString FullPath(const Node& node);

[[nodiscard]] Harbor::HRESULT AppendChild(Node& parent, Node& child);
[[nodiscard]] Harbor::HRESULT RemoveChild(Node& parent, Node& child);

// For walks. While the lock is held, the structure of no tree changes. The holder must not call a callback and must not
// close a handle. OpenLocked opens a node with the lock held; the caller must have a handle to it or to its parent.
[[nodiscard]] std::shared_lock<Harbor::ReaderWriterLock> LockStructure();
[[nodiscard]] AcnHandle OpenLocked(Node& node) noexcept;

struct CloseDeleter {
    void operator()(Node* node) const noexcept { Close(*node); }
};
using OpenNode = std::unique_ptr<Node, CloseDeleter>;

}  // namespace NodeFabric
