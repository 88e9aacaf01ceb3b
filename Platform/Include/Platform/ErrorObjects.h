// The thread's error object: a description and a source id that go beside a failing code from a component to its
// caller. There is one slot a thread in the whole process. The interfaces keep the published slot order of COM.
#pragma once

#include "Platform/Types.h"

namespace Platform {

using BSTR = WideChar*;  // a counted text, made and freed by the two functions below

PLATFORM_EXPORT BSTR SysAllocStringLen(const WideChar* text, std::uint32_t length) noexcept;  // null: out of memory
PLATFORM_EXPORT void SysFreeString(BSTR text) noexcept;
PLATFORM_EXPORT std::uint32_t SysStringLen(BSTR text) noexcept;  // in characters; 0 for null

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

// A new error object, one reference the caller's. Its QueryInterface knows the three interfaces.
PLATFORM_EXPORT HRESULT CreateErrorInfo(ICreateErrorInfo** result) noexcept;
// Puts an object into the calling thread's slot, counting a reference, or empties the slot.
PLATFORM_EXPORT HRESULT SetErrorInfo(DWORD reserved, IErrorInfo* object) noexcept;
// Takes the object out of the slot: 0 and a reference, or 1 (S_FALSE) and null if the slot is empty.
PLATFORM_EXPORT HRESULT GetErrorInfo(DWORD reserved, IErrorInfo** object) noexcept;

}  // namespace Platform
