// While it lives, the calling thread works under the process's own identity.
#pragma once

#include "Common/Base/OwnedHandle.h"

namespace Harbor {

class ImpersonationRevertGuard {
public:
    // Inactive it does nothing at all.
    explicit ImpersonationRevertGuard(bool active);
    ImpersonationRevertGuard(const ImpersonationRevertGuard&) = delete;
    ImpersonationRevertGuard& operator=(const ImpersonationRevertGuard&) = delete;
    // An identity that can't be restored ends the process: the thread must not go on with rights that aren't its own.
    ~ImpersonationRevertGuard();

private:
    SystemHandle token_;  // empty: there is nothing to restore
};

}  // namespace Harbor
