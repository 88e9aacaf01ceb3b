// For the owners of trees (hosts, services, tests): builds and changes trees.
#pragma once

#include "NodeFabric/NodeFabric.h"

extern "C" {

// Appends `child` to the children of `parent`. Returns E_INVALIDARG if `child` already has a parent, or if `parent` is
// `child` or below it. The caller keeps both handles.
PLATFORM_EXPORT Platform::HRESULT AcnAppendChild(AcnHandle parent, AcnHandle child);
// Removes `child`, which stays alive while a handle to it is open. Returns 0x80070490 if it is not a child of `parent`.
PLATFORM_EXPORT Platform::HRESULT AcnRemoveChild(AcnHandle parent, AcnHandle child);
// Stores the number of handles that are open in this process. Two look-ups of one node count as two.
PLATFORM_EXPORT Platform::HRESULT AcnGetOpenHandleCount(std::uint64_t* out);
}
