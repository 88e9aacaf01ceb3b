#include "Watch.h"

#include <algorithm>

#include "Common/Base/HRes.h"
#include "Common/Nodes/ACNode.h"

namespace ConfigServer {

using namespace Harbor;

namespace {

constexpr WideChar Separator = u'\\';

}  // namespace

bool IsNodePath(std::u16string_view path) noexcept {
    return path.starts_with(Separator) && !path.ends_with(Separator) && path.find(u"\\\\") == path.npos &&
           path.find(u'\0') == path.npos;
}

WatchScope::WatchScope(AcnHandle filterHandle, AcnHandle parametersHandle) {
    const ACNode filter = ACNode::Borrow(filterHandle);
    path_ = filter.GetText(WatchFilter::NodePath);
    isParent_ = filter.GetInt64(WatchFilter::IsParent) != 0;
    maxDepth_ = filter.GetInt64(WatchFilter::MaxDepth);
    const ACNode parameters = ACNode::Borrow(parametersHandle);
    changesMask_ = parameters.GetInt64(WatchParameters::ChangesMask);
    (void)parameters.GetInt64(WatchParameters::SubscribeOptions);
    if (!IsNodePath(path_) || maxDepth_ < 0) ThrowError(E_INVALIDARG);
}

bool WatchScope::Covers(std::u16string_view path, std::int64_t changes) const noexcept {
    if ((changes & changesMask_) == 0 || !path.starts_with(path_)) return false;
    const std::u16string_view below = path.substr(path_.size());
    if (below.empty()) return !isParent_;
    return below.front() == Separator && std::ranges::count(below, Separator) <= maxDepth_;
}

}  // namespace ConfigServer
