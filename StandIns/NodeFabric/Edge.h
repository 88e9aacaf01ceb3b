// The edge that every C function of the store stands behind.
#pragma once

#include <new>
#include <stdexcept>

#include "Harbor/ResultCodes.h"

namespace NodeFabric {

// Runs the body and gives its code. No exception gets past this: callers may be written in any language.
template <class Body>
[[nodiscard]] Harbor::HRESULT AtEdge(Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return Harbor::E_OUTOFMEMORY;
    } catch (const std::length_error&) {
        return Harbor::E_OUTOFMEMORY;
    } catch (...) {
        return Harbor::E_FAIL;
    }
}

}  // namespace NodeFabric
