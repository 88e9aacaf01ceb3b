#include "Common/Failures/MethodEdge.h"

namespace Harbor {

HRESULT ReportMethodFailure(const TracedMethod& method, const HRX& failure) noexcept {
    WideString text;
    TRY_LOG_AT(method.place, Err, method.name << u" failed: " << (text = failure.ToText()));
    return text.empty() ? failure.PublishErrorInfo() : failure.PublishErrorInfo(text);
}

}  // namespace Harbor
