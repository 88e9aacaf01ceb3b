// The types in the signatures of the layer's functions. They have the sizes of the Windows types of the same names.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "Platform/Export.h"

namespace Platform {

using HRESULT = std::int32_t;  // negative: failure
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using BOOL = std::int32_t;  // 0: failure, and GetLastError returns the reason
using WideChar = char16_t;  // 16-bit text everywhere, whatever the width of wchar_t
using WideString = std::u16string;

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;

// An id of 16 bytes in the usual little-endian layout.
struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2, Data3;
    std::uint8_t Data4[8];
};
static_assert(sizeof(GUID) == 16);

inline bool operator==(const GUID& a, const GUID& b) noexcept {
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}

// A handle of a file, a thread, a token or the process.
using HANDLE = struct HandleOpaque*;
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(~std::uintptr_t{0});

// A loaded module: its load address, or a unique value if the module was opened as a data file.
using HMODULE = struct ModuleOpaque*;

}  // namespace Platform
