// The edge of a component. Inside a component a failure is an HRX; here it becomes a code and an error object for the
// caller. Every method that is called from outside its component has this form:
//
//     HRESULT ActionImpl::GetType(GUID* type) {
//         return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionImpl::GetType"), [&] {
//             ...
//             return S_OK;
//         });
//     }
#pragma once

#include "Common/Base/HRes.h"
#include "Common/Logging/FunctionTrace.h"

namespace Harbor {

// The method, as the log names it.
struct TracedMethod {
    std::uint32_t severity;  // of the trace
    const WideChar* name;    // qualified
    SourcePlace place;
};

// Logs the failure of a method at ERR, stores it in the thread's error object, and returns its code. If the log fails,
// the line is lost, and the caller still receives the code.
[[nodiscard]] HRESULT ReportMethodFailure(const TracedMethod& method, const HRX& failure) noexcept;

// Calls the body inside the method's trace and returns its code. An HRX is logged and stored in the thread's error
// object, and its code is returned. Exceptions of other types pass through.
template <class Body>
HRESULT MethodEdge(const TracedMethod& method, Body&& body) {
    try {
        const auto trace = OpenFunctionTrace(method.severity, method.name, method.place);
        return body();
    } catch (const HRX& failure) {
        return ReportMethodFailure(method, failure);
    }
}

}  // namespace Harbor

#define TRACED_METHOD(severity, name)                                  \
    ::Harbor::TracedMethod {                                           \
        ::Harbor::LogSeverity::severity, u"" name, HARBOR_SOURCE_PLACE \
    }
