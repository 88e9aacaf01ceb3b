#include "Host/Run/ServedTree.h"

#include "Common/Base/Text.h"
#include "Host/Base/Failure.h"
#include "ModuleBroker/Registration.h"

namespace Host {

ServedTree::ServedTree() : tree_(ConfigServer::CreateConfigServer()) {
    RequireSuccess(MBSetNamedInstance(Harbor::ConfigServiceInstanceName, tree_.Get()), "MBSetNamedInstance");
}

ServedTree::~ServedTree() {
    MBSetNamedInstance(Harbor::ConfigServiceInstanceName, nullptr);
}

void ServedTree::Write(std::u16string_view path, const std::vector<ConfigServer::TextAttribute>& attributes) const {
    RequireSuccess(tree_->WriteNode(path, attributes), "Write '" + Harbor::ToUtf8(path) + "'");
}

}  // namespace Host
