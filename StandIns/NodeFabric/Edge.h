// The boundary of every C function of the store.
#pragma once

#include <new>
#include <stdexcept>

#include "Harbor/ResultCodes.h"

namespace NodeFabric {

// Runs the body and returns its code. Lets no exception through: callers may be written in any language.
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
