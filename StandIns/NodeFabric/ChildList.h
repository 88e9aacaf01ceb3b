// The children of one node, in order and by name. The tree owns the nodes and holds the lock.
#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "NodeFabric/NodeFabric.h"

namespace NodeFabric {

class ChildList {
public:
    // Amortised constant time. If it throws, the list is unchanged.
    void Append(AcnHandle child);

    // Returns false if it is not a child. Linear time.
    bool Remove(AcnHandle child) noexcept;

    // Returns the first child of the name, or null. Constant time on average.
    [[nodiscard]] AcnHandle Find(std::u16string_view name) const noexcept;

    // Removes and returns the last child without updating the index. After that no other function may be called, except
    // Empty and this one.
    [[nodiscard]] AcnHandle PopForDestruction() noexcept;

    bool Empty() const noexcept { return ordered_.empty(); }
    std::size_t Size() const noexcept { return ordered_.size(); }
    AcnHandle operator[](std::size_t index) const noexcept { return ordered_[index]; }
    auto begin() const noexcept { return ordered_.begin(); }
    auto end() const noexcept { return ordered_.end(); }

private:
    // The first child of each name. The keys are the nodes' own names, which never change.
    using Index = std::unordered_map<std::u16string_view, AcnHandle>;

    AcnHandle FindInLine(std::u16string_view name) const noexcept;
    void AddToIndex(AcnHandle child);
    void RemoveFromIndex(AcnHandle child) noexcept;

    std::vector<AcnHandle> ordered_;
    std::unique_ptr<Index> index_;  // null while there are so few children that a linear search is faster
};

}  // namespace NodeFabric
