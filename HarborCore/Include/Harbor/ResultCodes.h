// The result codes that components exchange, with the values that the platform publishes. A negative code is a failure.
#pragma once

#include "Harbor/Types.h"

namespace Harbor {

constexpr HRESULT MakeHResult(std::uint32_t bits) noexcept {
    return static_cast<HRESULT>(bits);
}

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOINTERFACE = MakeHResult(0x80004002);
inline constexpr HRESULT E_POINTER = MakeHResult(0x80004003);
inline constexpr HRESULT E_ABORT = MakeHResult(0x80004004);
inline constexpr HRESULT E_FAIL = MakeHResult(0x80004005);
inline constexpr HRESULT E_UNEXPECTED = MakeHResult(0x8000FFFF);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = MakeHResult(0x80040154);
inline constexpr HRESULT E_OUTOFMEMORY = MakeHResult(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = MakeHResult(0x80070057);

// Returns a system error as a result code: 0x80070000 with the low 16 bits of a positive number. 0 and negative numbers
// are returned unchanged.
constexpr HRESULT HResultFromWin32(std::uint32_t error) noexcept {
    return static_cast<HRESULT>(error) <= 0 ? static_cast<HRESULT>(error) : MakeHResult(0x80070000u | (error & 0xFFFF));
}

// The failures of the node store that its callers distinguish.
inline constexpr HRESULT NOT_FOUND = HResultFromWin32(1168);          // 0x80070490: no such attribute or child
inline constexpr HRESULT BUFFER_TOO_SMALL = HResultFromWin32(122);    // 0x8007007A: the needed size was stored
inline constexpr HRESULT DATATYPE_MISMATCH = HResultFromWin32(1629);  // 0x8007065D: stored as another type

constexpr bool Failed(HRESULT code) noexcept {
    return code < 0;
}
constexpr bool Succeeded(HRESULT code) noexcept {
    return code >= 0;
}

}  // namespace Harbor
