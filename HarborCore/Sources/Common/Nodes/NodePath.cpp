#include "Common/Nodes/NodePath.h"

#include <algorithm>

namespace Harbor {
namespace {

constexpr WideChar Separator = u'\\';
constexpr std::size_t ShortestPrefix = 2;  // a backslash and one character

bool IsElementEnd(std::u16string_view path, std::size_t at) noexcept {
    return at >= path.size() || path[at] == Separator;
}

// Returns the length of the common prefix of the two paths. It ends at the first difference if an element ends there in
// both paths, otherwise at the last backslash before it.
std::size_t CommonPrefix(std::u16string_view own, std::u16string_view path) noexcept {
    std::size_t prefix = 0;
    std::size_t at = 1;
    for (; at < own.size() && at < path.size() && own[at] == path[at]; ++at) {
        if (own[at] == Separator) prefix = at;
    }
    return IsElementEnd(own, at) && IsElementEnd(path, at) ? at : prefix;
}

std::u16string_view After(std::u16string_view path, std::size_t prefix) noexcept {
    path.remove_prefix(std::min(prefix, path.size()));
    if (path.starts_with(Separator)) path.remove_prefix(1);
    return path;
}

}  // namespace

NodePathWalk WalkBetween(std::u16string_view own, std::u16string_view path) noexcept {
    const std::size_t prefix = CommonPrefix(own, path);
    if (prefix < ShortestPrefix) return {};
    const std::u16string_view up = After(own, prefix);
    const auto separators = static_cast<std::size_t>(std::count(up.begin(), up.end(), Separator));
    return {.exists = true, .levelsUp = separators + (up.empty() ? 0 : 1), .down = After(path, prefix)};
}

}  // namespace Harbor
