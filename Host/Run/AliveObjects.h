// What is alive in this process.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Harbor/ComponentsModule.h"

namespace Host {

struct AliveObjects {
    std::uint32_t inModule = 0;                      // component objects and locks
    std::map<std::string, std::uint32_t> byClass{};  // the module's objects, as far as its log tells them
    std::uint32_t inHost = 0;                        // the host's own components
    std::uint64_t nodeHandles = 0;

    [[nodiscard]] bool None() const noexcept { return inModule == 0 && inHost == 0 && nodeHandles == 0; }
};

// The objects and locks that a module counts.
[[nodiscard]] std::uint32_t CountObjects(Harbor::IComponentsModule& module);

// Asks a module what is alive. Classes are told in the module's log alone, at WARN, and while its tracking is on: there
// they are read back.
class AliveCounter {
public:
    // To be called before the module is loaded: turns its tracking on, where the environment doesn't say otherwise.
    static void TurnTrackingOn();

    AliveCounter(Harbor::IComponentsModule& module, const std::string& modulePath);

    // Makes the module list its objects in its log.
    [[nodiscard]] AliveObjects Count() const;

private:
    Harbor::IComponentsModule& module_;
    const std::string logFile_;
};

}  // namespace Host
