// What one subscription watches, and the state of the watch.
#pragma once

#include <string_view>

#include "Harbor/ConfigService.h"

namespace ConfigServer {

// Whether the path has at least one element, and each has a name with a backslash before it.
[[nodiscard]] bool IsNodePath(std::u16string_view path) noexcept;

class WatchScope {
public:
    // Reads the two nodes of AddSubscription. Failures are thrown as HRX.
    WatchScope(AcnHandle filter, AcnHandle parameters);

    [[nodiscard]] bool Covers(std::u16string_view path, std::int64_t changes) const noexcept;

private:
    Harbor::WideString path_;
    bool isParent_;
    std::int64_t maxDepth_;
    std::int64_t changesMask_;
};

struct Watch {
    enum class State { Created, Started, Ended };

    const WatchScope scope;
    Harbor::IACModifyCallback* const callback;          // not counted
    Harbor::IACModifySubscription* const subscription;  // not counted: its last Release ends the watch
    State state = State::Created;                       // guarded by the dispatcher's lock
};

}  // namespace ConfigServer
