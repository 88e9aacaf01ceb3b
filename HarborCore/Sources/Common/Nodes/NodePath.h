// The way from one node to another, worked out from their paths alone.
#pragma once

#include <string_view>

#include "Harbor/Types.h"

namespace Harbor {

struct NodePathWalk {
    bool exists = false;       // false: the two have nothing in common
    std::size_t levelsUp = 0;  // parents to take first
    std::u16string_view down;  // the elements to walk down then; borrows from the path
};

// From the node whose full path is `own` to the absolute path `path`, both with a backslash before each element.
[[nodiscard]] NodePathWalk WalkBetween(std::u16string_view own, std::u16string_view path) noexcept;

// A path without a leading backslash only goes down, and doesn't ask for the own path.
template <class OwnPath>
[[nodiscard]] NodePathWalk WalkTo(std::u16string_view path, OwnPath ownPath) {
    if (!path.starts_with(u'\\')) return {.exists = true, .levelsUp = 0, .down = path};
    return WalkBetween(ownPath(), path);
}

}  // namespace Harbor
