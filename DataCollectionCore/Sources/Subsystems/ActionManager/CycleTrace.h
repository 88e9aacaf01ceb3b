// What the steps of the cycle share.
#pragma once

#include "Common/Logging/Log.h"

namespace DataCollection::ActionManagement {

// Whether a step of the cycle may write lines of that severity. Asked once for each step, and again after each call of
// a listener.
[[nodiscard]] inline bool IsStepLogged(std::uint32_t severity) noexcept {
    try {
        return Harbor::IsLogEnabled(severity);
    } catch (...) {
        return true;  // without memory for the settings: nothing is left out
    }
}

// Whether the steps of the cycle are traced. If they are, each step makes every call that its trace shows. If not, it
// leaves out those calls that would change nothing.
[[nodiscard]] inline bool IsCycleTraced() noexcept {
    return IsStepLogged(Harbor::LogSeverity::Dbg2);
}

}  // namespace DataCollection::ActionManagement
