// Trees from files with the text of a node dump.
#pragma once

#include <string>

#include "Common/Nodes/ACNode.h"

namespace Host {

// The one tree of the file: UTF-8, inside an "<nr>" element or without, and with the heading that a dump has in the log
// or without. A file that isn't right is refused as BadInput, with its name, the line and the reason.
[[nodiscard]] Harbor::ACNode ReadNodeFile(const std::string& path);

}  // namespace Host
