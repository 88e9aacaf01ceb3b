#include "Tree.h"

#include <algorithm>
#include <vector>

#include "Node.h"

namespace NodeFabric {

using namespace Harbor;

namespace {

constexpr WideChar Separator = u'\\';

Harbor::ReaderWriterLock StructureLock;
std::atomic<std::uint64_t> OpenHandles{0};

// Deletes leaf by leaf without recursion, since a tree may be deeper than any call stack.
struct TreeDeleter {
    void operator()(Node* root) const noexcept {
        for (Node* node = root; node != nullptr;) {
            if (!node->children.Empty()) {
                node = node->children.PopForDestruction();
            } else {
                const std::unique_ptr<Node> leaf(node);
                node = leaf->parent;
            }
        }
    }
};
using TreePtr = std::unique_ptr<Node, TreeDeleter>;

// Returns false if the count would become 0. Otherwise only the count changes, which needs no lock.
bool ReleaseOneOfSeveral(Node& node) noexcept {
    std::uint64_t count = node.holds.load(std::memory_order_relaxed);
    while (count > 1) {
        if (node.holds.compare_exchange_weak(count, count - 1, std::memory_order_release, std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

// Returns the tree that is no longer held, or null.
TreePtr ReleaseUpwards(Node& node) noexcept {
    const auto lock = LockStructure();
    for (Node* current = &node;;) {
        if (current->holds.fetch_sub(1, std::memory_order_acq_rel) != 1) return nullptr;
        // What this node counts on its parent keeps both alive until the next turn.
        if (current->parent == nullptr) return TreePtr(current);
        current = current->parent;
    }
}

AcnHandle OpenIfAny(Node* node) noexcept {
    return node != nullptr ? OpenLocked(*node) : nullptr;
}

bool IsAtOrBelow(const Node& node, const Node& ancestor) noexcept {
    const Node* current = &node;
    while (current != nullptr && current != &ancestor) current = current->parent;
    return current != nullptr;
}

TreePtr CopyAlone(const Node& source) {
    TreePtr copy(std::make_unique<Node>(source.name, source.type).release());
    const std::lock_guard lock(source.attributesLock);
    copy->attributes = source.attributes;
    return copy;
}

Node& Adopt(Node& parent, TreePtr child) {
    parent.children.Append(child.get());
    child->parent = &parent;
    return *child.release();
}

void CopyLevels(const Node& source, Node& target, std::uint32_t depth) {
    struct Step {
        const Node* source;
        Node* target;
        std::uint32_t depth;
    };
    std::vector<Step> open{{&source, &target, depth}};
    while (!open.empty()) {
        const Step step = open.back();
        open.pop_back();
        if (step.depth == 0) continue;
        for (const Node* child : step.source->children) {
            Node& copy = Adopt(*step.target, CopyAlone(*child));
            if (!child->children.Empty()) open.push_back({child, &copy, step.depth - 1});
        }
    }
}

WideString PathOf(const Node& node) {
    std::size_t length = 0;
    const Node* root = &node;
    for (const Node* current = &node; current != nullptr; current = current->parent) {
        length += current->name.size() + 1;
        root = current;
    }
    WideString path(root->pathAbove);
    path.resize(path.size() + length);
    auto place = path.end();
    for (const Node* current = &node; current != nullptr; current = current->parent) {
        place = std::copy_backward(current->name.begin(), current->name.end(), place);
        *--place = Separator;
    }
    return path;
}

}  // namespace

std::shared_lock<Harbor::ReaderWriterLock> LockStructure() {
    return std::shared_lock(StructureLock);
}

AcnHandle OpenLocked(Node& node) noexcept {
    OpenHandles.fetch_add(1, std::memory_order_relaxed);
    // The caller's own handle holds the parent during this call. If the last handle of the child is closed at the same
    // time, that releases its own count on the parent, and this call adds another one.
    if (node.holds.fetch_add(1, std::memory_order_relaxed) == 0 && node.parent != nullptr) {
        node.parent->holds.fetch_add(1, std::memory_order_relaxed);
    }
    return &node;
}

AcnHandle CreateRoot(std::u16string_view name, std::u16string_view type) {
    return OpenLocked(*std::make_unique<Node>(name, type).release());
}

AcnHandle CloneTree(const Node& source, std::uint32_t depth) {
    const auto lock = LockStructure();
    TreePtr root = CopyAlone(source);
    root->pathAbove = source.parent != nullptr ? PathOf(*source.parent) : source.pathAbove;
    CopyLevels(source, *root, depth);
    return OpenLocked(*root.release());
}

AcnHandle Duplicate(Node& node) noexcept {
    // The caller's handle keeps the count above 0, so the parent is not changed and no lock is needed.
    OpenHandles.fetch_add(1, std::memory_order_relaxed);
    node.holds.fetch_add(1, std::memory_order_relaxed);
    return &node;
}

void Close(Node& node) noexcept {
    OpenHandles.fetch_sub(1, std::memory_order_relaxed);
    if (ReleaseOneOfSeveral(node)) return;
    // The lock is released before the tree is deleted, which may take long.
    const TreePtr unheld = ReleaseUpwards(node);
}

std::uint64_t OpenHandleCount() noexcept {
    return OpenHandles.load(std::memory_order_relaxed);
}

AcnHandle OpenParent(const Node& node) {
    const auto lock = LockStructure();
    return OpenIfAny(node.parent);
}

AcnHandle OpenChild(const Node& node, std::uint64_t index) {
    const auto lock = LockStructure();
    return index < node.children.Size() ? OpenLocked(*node.children[index]) : nullptr;
}

AcnHandle OpenChild(const Node& node, std::u16string_view name) {
    const auto lock = LockStructure();
    return OpenIfAny(node.children.Find(name));
}

std::uint64_t ChildCount(const Node& node) {
    const auto lock = LockStructure();
    return node.children.Size();
}

WideString FullPath(const Node& node) {
    const auto lock = LockStructure();
    return PathOf(node);
}

HRESULT AppendChild(Node& parent, Node& child) {
    const std::unique_lock lock(StructureLock);
    if (child.parent != nullptr || &parent == &child) return E_INVALIDARG;
    // Nothing is below a leaf. Without this check, building a chain at its end would take time in the square of its
    // length.
    if (!child.children.Empty() && IsAtOrBelow(parent, child)) return E_INVALIDARG;
    parent.children.Append(&child);
    parent.holds.fetch_add(1, std::memory_order_relaxed);
    child.parent = &parent;
    child.pathAbove = {};
    return S_OK;
}

HRESULT RemoveChild(Node& parent, Node& child) {
    const std::unique_lock lock(StructureLock);
    if (child.parent != &parent || !parent.children.Remove(&child)) return NOT_FOUND;
    child.parent = nullptr;
    parent.holds.fetch_sub(1, std::memory_order_release);  // not the last one: the caller has a handle
    return S_OK;
}

}  // namespace NodeFabric
