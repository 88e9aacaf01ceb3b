// The terminal that standard output writes to.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>

namespace Host {

struct Terminal {
    std::function<std::size_t()> width;  // returns the present width in columns
    bool hasColors = true;               // unless the environment variable NO_COLOR has a value
};

// Makes the output the same on every system: UTF-8 with the line ends that the program writes.
void PrepareOutput() noexcept;

// Nothing if standard output is not a terminal, or is one that cannot move its cursor (TERM=dumb).
[[nodiscard]] std::optional<Terminal> TerminalOfOutput();

}  // namespace Host
