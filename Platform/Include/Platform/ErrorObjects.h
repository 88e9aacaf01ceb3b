// The thread's error object: a description and a source id that a component passes to its caller in addition to a
// failure code. Each thread of the process has one slot for it. The interfaces have the published slot order of COM.
#pragma once

#include "Platform/Types.h"

namespace Platform {

using BSTR = WideChar*;  // a counted text; created and freed by the next two functions

PLATFORM_API BSTR SysAllocStringLen(const WideChar* text, std::uint32_t length) noexcept;  // null if memory runs out
PLATFORM_API void SysFreeString(BSTR text) noexcept;
PLATFORM_API std::uint32_t SysStringLen(BSTR text) noexcept;  // in characters; 0 for null

struct IUnknown {
    static constexpr GUID Id{0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
    virtual HRESULT QueryInterface(const GUID* iid, void** result) = 0;
    virtual std::uint32_t AddRef() = 0;
    virtual std::uint32_t Release() = 0;
};

struct IErrorInfo : IUnknown {
    static constexpr GUID Id{0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
    virtual HRESULT GetGUID(GUID* guid) = 0;
    virtual HRESULT GetSource(BSTR* source) = 0;
    virtual HRESULT GetDescription(BSTR* description) = 0;  // the caller frees the text, which may be null
    virtual HRESULT GetHelpFile(BSTR* file) = 0;
    virtual HRESULT GetHelpContext(DWORD* context) = 0;
};

struct ICreateErrorInfo : IUnknown {
    static constexpr GUID Id{0x22F03340, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
    virtual HRESULT SetGUID(const GUID* guid) = 0;
    virtual HRESULT SetSource(const WideChar* source) = 0;
    virtual HRESULT SetDescription(const WideChar* description) = 0;
    virtual HRESULT SetHelpFile(const WideChar* file) = 0;
    virtual HRESULT SetHelpContext(DWORD context) = 0;
};

// Creates an error object. The caller owns its one reference. Its QueryInterface supports the three interfaces above.
PLATFORM_API HRESULT CreateErrorInfo(ICreateErrorInfo** result) noexcept;
// Stores an object in the calling thread's slot and counts a reference on it. Null empties the slot. The object that
// was there before is released.
PLATFORM_API HRESULT SetErrorInfo(DWORD reserved, IErrorInfo* object) noexcept;
// Removes the object from the calling thread's slot. Returns 0 and a reference, which the caller owns, or 1 (S_FALSE)
// and null if the slot is empty.
PLATFORM_API HRESULT GetErrorInfo(DWORD reserved, IErrorInfo** object) noexcept;

}  // namespace Platform
