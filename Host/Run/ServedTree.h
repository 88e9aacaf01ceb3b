// The configuration tree of this process, registered under the name that the module looks up.
#pragma once

#include "ConfigServer/ConfigServer.h"

namespace Host {

// The destructor removes the name; by then no subscription may be left. Failures are thrown as CallFailure.
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
