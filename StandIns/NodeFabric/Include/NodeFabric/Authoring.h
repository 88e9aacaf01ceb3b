// For those who own a tree (hosts, services, tests): building and changing it.
#pragma once

#include "NodeFabric/NodeFabric.h"

extern "C" {

// Puts `child` behind the last child of `parent`. It must have no parent, and `parent` must not stand below it
// (E_INVALIDARG). Both handles stay the caller's.
PLATFORM_EXPORT Platform::HRESULT AcnAppendChild(AcnHandle parent, AcnHandle child);
// Takes `child` out; it lives on while a handle to it is open. Not found if it is no child of `parent`.
PLATFORM_EXPORT Platform::HRESULT AcnRemoveChild(AcnHandle parent, AcnHandle child);
// The handles that are open in this process: two look-ups of one node are two.
PLATFORM_EXPORT Platform::HRESULT AcnGetOpenHandleCount(std::uint64_t* out);
}
