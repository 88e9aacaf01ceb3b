// The configuration tree of this process, served under the name by which the module looks for it.
#pragma once

#include "ConfigServer/ConfigServer.h"

namespace Host {

// The name is taken out at its end: by then nobody may watch the tree any more. Failures are thrown as CallFailure.
class ServedTree {
public:
    ServedTree();
    ServedTree(const ServedTree&) = delete;
    ServedTree& operator=(const ServedTree&) = delete;
    ~ServedTree();

    void Write(std::u16string_view path, const std::vector<ConfigServer::TextAttribute>& attributes) const;

private:
    const Harbor::ComponentPtr<ConfigServer::IConfigTree> tree_;
};

}  // namespace Host
