// The edge of the service's methods.
#pragma once

#include "Common/Failures/CodeOfCall.h"
#include "Common/Failures/MethodEdge.h"

namespace ConfigServer {

// Runs the body as MethodEdge does. Lets no exception through, not even std::bad_alloc.
template <class Body>
[[nodiscard]] Harbor::HRESULT ServiceMethod(const Harbor::TracedMethod& method, const Body& body) noexcept {
    return Harbor::CodeOfCall([&] { return Harbor::MethodEdge(method, body); });
}

}  // namespace ConfigServer
