// Command points: how they are written on the command line, and where they are in the configuration tree.
#pragma once

#include <optional>
#include <string_view>

#include "DataCollection/ForcedActionConfig.h"

namespace Host {

inline constexpr std::string_view CommandPointForm = "PARENT/LEAF, two names without / and \\";

// Nothing for a text of another form.
[[nodiscard]] std::optional<DataCollection::ActionManagement::ForcedActionConfig> ParseCommandPoint(
    std::string_view text);

// The full path of the node of a command point. The names are not checked.
[[nodiscard]] Harbor::WideString CommandPointPath(std::u16string_view parent, std::u16string_view leaf);

}  // namespace Host
