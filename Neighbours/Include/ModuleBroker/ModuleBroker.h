// Named instances: one component finds another by name. Any thread may call the function at any time.
#pragma once

#include "Platform/Types.h"

extern "C" {

// Queries the instance called `name` for the interface `iid` and stores a counted pointer in `*result`. `reserved` must
// be null. Returns 0x80070490 if no instance has the name, E_POINTER if `name`, `iid` or `result` is null, E_INVALIDARG
// if `reserved` is not null, otherwise what the instance's QueryInterface returns.
PLATFORM_EXPORT Platform::HRESULT MBGetNamedInstance(const Platform::WideChar* name, void* reserved,
                                                     const Platform::GUID* iid, void** result);
}
