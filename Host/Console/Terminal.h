// What standard output is, where it is a terminal.
#pragma once

#include <cstddef>
#include <optional>

namespace Host {

struct Terminal {
    std::size_t width = 80;  // in characters
    bool hasColors = true;   // unless the environment variable NO_COLOR has a value
};

// Nothing if standard output is no terminal, or one that can't move its cursor (TERM=dumb).
[[nodiscard]] std::optional<Terminal> TerminalOfOutput();

}  // namespace Host
