// Reads configuration trees from files with the text of a node dump.
#pragma once

#include <string>

#include "Common/Nodes/ACNode.h"

namespace Host {

// Returns the tree of a file, which is in UTF-8 and has one tree. The "<nr>" element around the tree, and the heading
// that a dump has in the log, may be missing. If the file is not valid, throws BadInput with its name, the line and the
// reason.
[[nodiscard]] Harbor::ACNode ReadNodeFile(const std::string& path);

}  // namespace Host
