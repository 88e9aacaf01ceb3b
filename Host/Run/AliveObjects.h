// The objects and handles that are alive in this process.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Harbor/Module.h"

namespace Host {

struct AliveObjects {
    std::uint32_t inModule = 0;                      // component objects and locks
    std::map<std::string, std::uint32_t> byClass{};  // the module's objects, as far as its log lists them
    std::uint32_t inHost = 0;                        // the host's own components
    std::uint64_t nodeHandles = 0;

    [[nodiscard]] bool None() const noexcept { return inModule == 0 && inHost == 0 && nodeHandles == 0; }
};

// Returns the number of objects and locks of a module.
[[nodiscard]] std::uint32_t CountObjects(Harbor::IComponentsModule& module);

// Counts what is alive. The module writes the classes of its objects only to its log, at WARN and while its tracking is
// on, so they are read from there.
class AliveCounter {
public:
    // Called before the module is loaded. Turns its tracking on, unless the environment has a setting for it.
    static void EnableTracking();

    // Borrows the module.
    explicit AliveCounter(const Harbor::Module& module);

    // Makes the module list its objects in its log. Failures are thrown as Harbor::Failure.
    [[nodiscard]] AliveObjects Count() const;

private:
    Harbor::IComponentsModule& module_;
    const std::string logFile_;
};

}  // namespace Host
