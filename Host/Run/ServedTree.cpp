#include "Host/Run/ServedTree.h"

#include "Common/Base/Text.h"
#include "Common/Nodes/CNodeSerializer.h"
#include "Harbor/Failure.h"
#include "ModuleBroker/Registration.h"

namespace Host {

ServedTree::ServedTree() : tree_(ConfigServer::CreateConfigServer()) {
    Harbor::ThrowIfFailed(MBSetNamedInstance(Harbor::ConfigServiceInstanceName, tree_.Get()), "MBSetNamedInstance");
}

ServedTree::~ServedTree() {
    MBSetNamedInstance(Harbor::ConfigServiceInstanceName, nullptr);
}

void ServedTree::Write(std::u16string_view path, const std::vector<ConfigServer::TextAttribute>& attributes) const {
    Harbor::ThrowIfFailed(tree_->WriteNode(path, attributes), "Write '" + Harbor::ToUtf8(path) + "'");
}

std::string ServedTree::ToXml() const {
    constexpr std::uint32_t noFlags = 0;
    Harbor::ACNode copy;
    Harbor::ThrowIfFailed(tree_->CopyTree(copy.Receive()), "Copy the tree");
    const AcnHandle root = copy.Handle();
    std::string text = Harbor::NodesToText(&root, 1, noFlags, AcnWholeTree);
    std::erase(text, '\r');
    const std::size_t end = text.find_last_not_of(std::string_view("\n\0", 2));
    return text.substr(0, end + 1) + '\n';
}

}  // namespace Host
