// The configuration tree of this process, registered under the name that the module looks up.
#pragma once

#include <string>

#include "ConfigServer/ConfigServer.h"

namespace Host {

// The destructor removes the name; by then no subscription may be left. Failures are thrown as Harbor::Failure.
class ServedTree {
public:
    ServedTree();
    ServedTree(const ServedTree&) = delete;
    ServedTree& operator=(const ServedTree&) = delete;
    ~ServedTree();

    void Write(std::u16string_view path, const std::vector<ConfigServer::TextAttribute>& attributes) const;

    // Returns the whole tree as XML, in the form that `compare` reads.
    [[nodiscard]] std::string ToXml() const;

private:
    const Harbor::ComponentPtr<ConfigServer::IConfigTree> tree_;
};

}  // namespace Host
