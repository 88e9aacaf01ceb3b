// Computes the steps from one node to another from their paths. Does not call the store.
#pragma once

#include <string_view>

#include "Harbor/Types.h"

namespace Harbor {

struct NodePathWalk {
    bool exists = false;       // false: the paths have no common element
    std::size_t levelsUp = 0;  // steps to the parent, taken first
    std::u16string_view down;  // the elements of the steps down, taken next; borrows from the path
};

// Returns the steps from the node with the full path `own` to `path`. Both have a backslash before each element.
[[nodiscard]] NodePathWalk WalkBetween(std::u16string_view own, std::u16string_view path) noexcept;

// Returns the steps to `path`. A path without a leading backslash is relative to the node, and `ownPath` is then not
// called; otherwise it is called for the full path of the node.
template <class OwnPath>
[[nodiscard]] NodePathWalk WalkTo(std::u16string_view path, OwnPath ownPath) {
    if (!path.starts_with(u'\\')) return {.exists = true, .levelsUp = 0, .down = path};
    return WalkBetween(ownPath(), path);
}

}  // namespace Harbor
