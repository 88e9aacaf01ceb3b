// What a component library gives to its host.
#pragma once

#include "Harbor/ComponentUnknown.h"

namespace Harbor {

// The module object. AddRef and Release always give 0xFFFFFFFF: it lives as long as the library is loaded. Any thread
// may call any operation.
struct IComponentsModule : IComponentUnknown {
    static constexpr GUID Id{0x989524A9, 0x625D, 0x48C8, {0xAB, 0x03, 0x7C, 0x08, 0x4E, 0xB5, 0x26, 0x5D}};

    virtual HRESULT NoOperation() = 0;
    // Logs the objects that are still alive, if tracking is on.
    virtual HRESULT DumpAliveObjects() = 0;
    // Hold the library without an object. Both give the new count.
    virtual std::uint32_t LockModule() = 0;
    virtual std::uint32_t UnlockModule() = 0;
    // Writes 1 while objects or locks remain, else 0. E_POINTER for null.
    virtual HRESULT IsModuleLocked(std::int32_t* flag) = 0;
    // Creates an object of a class. `classId` must not be null. REGDB_E_CLASSNOTREG for an unknown class, E_NOINTERFACE
    // for an interface that it doesn't have, E_INVALIDARG for another null. The result carries one reference.
    virtual HRESULT CreateInstance(const GUID* classId, const GUID* iid, void** result) = 0;
};

// The library's one export. Stores the module object; no reference is counted. E_INVALIDARG for null.
using GetComponentsModuleObjectFunction = HRESULT (*)(IComponentsModule** out);
inline constexpr char GetComponentsModuleObjectName[] = "GetComponentsModuleObject";

}  // namespace Harbor
