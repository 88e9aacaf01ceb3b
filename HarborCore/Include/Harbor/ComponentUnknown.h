// The base of every interface.
#pragma once

#include "Harbor/ResultCodes.h"

namespace Harbor {

// The order of the slots differs from that of COM. There is no virtual destructor, since the slots are part of the
// contract. Any thread may call these functions.
struct IComponentUnknown {
    static constexpr GUID Id{0x51C3FBA2, 0x85FE, 0x436B, {0xA0, 0xFF, 0x1C, 0x61, 0xA5, 0xC0, 0xC5, 0x85}};

    // Both return the new count. The last Release destroys the object on the calling thread.
    virtual std::uint32_t AddRef() = 0;
    virtual std::uint32_t Release() = 0;

    // Stores a pointer to another interface of the same object and counts a reference, which the caller releases.
    // Returns E_INVALIDARG for a null argument and E_NOINTERFACE for an unknown id; `*result` is then unchanged.
    virtual HRESULT QueryInterface(const GUID* iid, void** result) = 0;

protected:
    ~IComponentUnknown() = default;
};

}  // namespace Harbor
