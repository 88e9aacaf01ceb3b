// What is alive in this process.
#pragma once

#include <cstdint>

#include "Harbor/ComponentsModule.h"

namespace Host {

struct AliveObjects {
    std::uint32_t inModule = 0;  // component objects and locks
    std::uint32_t inHost = 0;    // the host's own components
    std::uint64_t nodeHandles = 0;

    [[nodiscard]] bool None() const noexcept { return inModule == 0 && inHost == 0 && nodeHandles == 0; }
};

// The objects and locks that a module counts.
[[nodiscard]] std::uint32_t CountObjects(Harbor::IComponentsModule& module);

[[nodiscard]] AliveObjects CountAlive(Harbor::IComponentsModule& module);

}  // namespace Host
