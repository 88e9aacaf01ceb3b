// While it lives, the calling thread has the identity of the process instead of one that it impersonates. It must end
// on the thread that made it.
#pragma once

#include "Common/Base/OwnedHandle.h"

namespace Harbor {

class ImpersonationRevertGuard {
public:
    // Does nothing if `active` is false. Failures are reported on the debugger's output.
    explicit ImpersonationRevertGuard(bool active);
    ImpersonationRevertGuard(const ImpersonationRevertGuard&) = delete;
    ImpersonationRevertGuard& operator=(const ImpersonationRevertGuard&) = delete;
    // Restores the thread's identity. If that fails, the process is aborted: the thread must not continue with the
    // rights of the process.
    ~ImpersonationRevertGuard();

private:
    SystemHandle token_;  // empty: there is nothing to restore
};

}  // namespace Harbor
