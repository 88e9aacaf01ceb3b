#include "Host/Run/CommandPoint.h"

#include <algorithm>

#include "Common/Base/Text.h"

namespace Host {

using namespace DataCollection::ActionManagement;

namespace {

bool IsNodeName(std::string_view text) {
    return !text.empty() && text.find_first_of("/\\") == text.npos;
}

}  // namespace

std::optional<ForcedActionConfig> ParseCommandPoint(std::string_view text) {
    const std::size_t slash = std::min(text.find('/'), text.size());
    const std::string_view parent = text.substr(0, slash);
    const std::string_view leaf = text.substr(std::min(slash + 1, text.size()));
    if (!IsNodeName(parent) || !IsNodeName(leaf)) return std::nullopt;
    return ForcedActionConfig{
        .LeafName = Harbor::FromUtf8(leaf), .ParentName = Harbor::FromUtf8(parent), .WithOptionBit0 = false};
}

Harbor::WideString CommandPointPath(std::u16string_view parent, std::u16string_view leaf) {
    return Harbor::WideString(DataCollection::ActionManagement::CommandPointRoot)
        .append(u"\\")
        .append(parent)
        .append(u"\\")
        .append(leaf);
}

}  // namespace Host
