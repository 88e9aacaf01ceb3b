#include "Platform/ErrorObjects.h"

#include "Native.h"
// After windows.h, which its declarations need.
#include <oleauto.h>

namespace Platform {

using Windows::Native;

BSTR SysAllocStringLen(const WideChar* text, std::uint32_t length) noexcept {
    return reinterpret_cast<BSTR>(::SysAllocStringLen(Native(text), length));
}

void SysFreeString(BSTR text) noexcept {
    ::SysFreeString(Native(text));
}

std::uint32_t SysStringLen(BSTR text) noexcept {
    return ::SysStringLen(Native(text));
}

HRESULT CreateErrorInfo(ICreateErrorInfo** result) noexcept {
    return ::CreateErrorInfo(reinterpret_cast<::ICreateErrorInfo**>(result));
}

HRESULT SetErrorInfo(DWORD reserved, IErrorInfo* object) noexcept {
    return ::SetErrorInfo(reserved, reinterpret_cast<::IErrorInfo*>(object));
}

HRESULT GetErrorInfo(DWORD reserved, IErrorInfo** object) noexcept {
    return ::GetErrorInfo(reserved, reinterpret_cast<::IErrorInfo**>(object));
}

}  // namespace Platform
