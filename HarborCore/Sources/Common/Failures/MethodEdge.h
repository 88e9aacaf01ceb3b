// The edge of a component: the one place where a failure, which travels as HRX inside, becomes a code and an error
// object for the caller.
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

// What an edge says of its method in the log.
struct TracedMethod {
    std::uint32_t severity;  // of the trace
    const WideChar* name;    // qualified
    SourcePlace place;
};

// Logs the failure of a method at ERR. Nothing is thrown: a failure of the log is no reason to lose the code.
void LogMethodFailure(const TracedMethod& method, const HRX& failure) noexcept;

// Runs the body under the method's trace and gives its code. HRX is logged, left in the thread's error object and
// turned into its code; exceptions of other types pass.
template <class Body>
HRESULT MethodEdge(const TracedMethod& method, Body&& body) {
    try {
        const auto trace = OpenFunctionTrace(method.severity, method.name, method.place);
        return body();
    } catch (const HRX& failure) {
        LogMethodFailure(method, failure);
        return failure.PublishErrorInfo();
    }
}

}  // namespace Harbor

#define TRACED_METHOD(severity, name)                                  \
    ::Harbor::TracedMethod {                                           \
        ::Harbor::LogSeverity::severity, u"" name, HARBOR_SOURCE_PLACE \
    }
