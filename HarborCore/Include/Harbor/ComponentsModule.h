// What a component library offers to its host: the module object and the export that returns it.
#pragma once

#include "Harbor/ComponentUnknown.h"

namespace Harbor {

// The module object. It lives as long as the library is loaded; AddRef and Release count nothing and always return
// 0xFFFFFFFF. Any thread may call any function.
struct IComponentsModule : IComponentUnknown {
    static constexpr GUID Id{0x989524A9, 0x625D, 0x48C8, {0xAB, 0x03, 0x7C, 0x08, 0x4E, 0xB5, 0x26, 0x5D}};

    // Returns S_OK.
    virtual HRESULT NoOperation() = 0;
    // Logs the objects that are alive, if the setting EnableAliveObjectsTracking is on. Returns S_OK.
    virtual HRESULT DumpAliveObjects() = 0;
    // Add and remove a lock. IsModuleLocked stores 1 while a lock exists, also without objects. Both return the new
    // number of objects and locks.
    virtual std::uint32_t LockModule() = 0;
    virtual std::uint32_t UnlockModule() = 0;
    // Stores 1 if objects or locks exist, otherwise 0. The host may unload the library only after this function has
    // stored 0. Returns E_POINTER for null.
    virtual HRESULT IsModuleLocked(std::int32_t* flag) = 0;
    // Creates an object of a class and stores the interface with one reference, which the caller releases. `classId`
    // must not be null. Returns REGDB_E_CLASSNOTREG for an unknown class, E_NOINTERFACE for an interface that the class
    // does not have, and E_INVALIDARG if another argument is null. If memory runs out, std::bad_alloc is thrown.
    virtual HRESULT CreateInstance(const GUID* classId, const GUID* iid, void** result) = 0;

protected:
    ~IComponentsModule() = default;
};

// The only export of the library. Stores the module object and counts no reference. Returns E_INVALIDARG for null.
using GetComponentsModuleObjectFunction = HRESULT (*)(IComponentsModule** out);
inline constexpr char GetComponentsModuleObjectName[] = "GetComponentsModuleObject";

}  // namespace Harbor
