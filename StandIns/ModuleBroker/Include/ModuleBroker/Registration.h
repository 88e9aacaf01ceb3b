// For hosts: registers an instance under a name, so that components find it with MBGetNamedInstance.
#pragma once

#include "Harbor/ComponentUnknown.h"
#include "ModuleBroker/ModuleBroker.h"

extern "C" {

// Registers `instance` under `name` and counts a reference on it. An instance that had the name before is released. A
// null `instance` removes the name if it exists. Returns E_POINTER if `name` is null, E_OUTOFMEMORY if memory runs out.
// A host must remove its names before it unloads the modules of the instances. Any thread may call it at any time.
PLATFORM_EXPORT Harbor::HRESULT MBSetNamedInstance(const Harbor::WideChar* name, Harbor::IComponentUnknown* instance);
}
