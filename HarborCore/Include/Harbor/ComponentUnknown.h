// The base of every interface.
#pragma once

#include "Harbor/ResultCodes.h"

namespace Harbor {

// The slot order differs from COM's. There is no virtual destructor: the slots are part of the contract.
struct IComponentUnknown {
    static constexpr GUID Id{0x51C3FBA2, 0x85FE, 0x436B, {0xA0, 0xFF, 0x1C, 0x61, 0xA5, 0xC0, 0xC5, 0x85}};

    // Both give the new count. The last Release ends the object on the calling thread. Any thread may call them.
    virtual std::uint32_t AddRef() = 0;
    virtual std::uint32_t Release() = 0;

    // Stores a counted pointer to another interface of the same object. E_INVALIDARG for a null argument,
    // E_NOINTERFACE for an unknown id; `*result` is then left as it was.
    virtual HRESULT QueryInterface(const GUID* iid, void** result) = 0;
};

}  // namespace Harbor
