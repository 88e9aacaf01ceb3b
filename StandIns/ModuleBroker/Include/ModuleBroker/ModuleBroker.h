// Named instances: one component finds another by a name. Any thread may call any function at any time.
#pragma once

#include "Harbor/ComponentUnknown.h"

extern "C" {

// Asks the instance of that name for an interface. `reserved` is null, else E_INVALIDARG. The result carries a
// reference. 0x80070490 if nobody has the name, E_POINTER for a null name, id or result, else what the instance's
// QueryInterface gives.
PLATFORM_EXPORT Harbor::HRESULT MBGetNamedInstance(const Harbor::WideChar* name, void* reserved,
                                                   const Harbor::GUID* iid, void** result);

// For hosts: gives an instance a name and counts a reference on it; an earlier one of the name is let go. Null takes
// the name out, if it is there. A host takes its names out before it unloads the modules behind them.
PLATFORM_EXPORT Harbor::HRESULT MBSetNamedInstance(const Harbor::WideChar* name, Harbor::IComponentUnknown* instance);
}
