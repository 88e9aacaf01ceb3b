// What the steps of the cycle share.
#pragma once

#include <utility>
#include <vector>

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

// Drops each entry that `keep` refuses before it looks at the next; the others move up in their order. `keep` must not
// throw.
template <class Entry, class Keep>
void RetainInOrder(std::vector<Entry>& entries, Keep keep) noexcept {
    auto kept = entries.begin();
    for (Entry& entry : entries) {
        if (!keep(entry)) {
            entry = Entry();
        } else {
            if (&*kept != &entry) *kept = std::move(entry);
            ++kept;
        }
    }
    entries.erase(kept, entries.end());
}

}  // namespace DataCollection::ActionManagement
