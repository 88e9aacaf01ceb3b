#include "Common/Failures/MethodEdge.h"

namespace Harbor {

void LogMethodFailure(const TracedMethod& method, const HRX& failure) noexcept {
    TRY_LOG_AT(method.place, Err, method.name << u" failed: " << failure);
}

}  // namespace Harbor
