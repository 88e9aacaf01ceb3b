// Environment variables and INI files.
#pragma once

#include "Platform/Types.h"

namespace Platform {

// Gives the length without the terminator if the value fits, the size needed with it if not, and 0 with
// ERROR_ENVVAR_NOT_FOUND if the variable isn't there. An empty variable with room for it gives 0 and no new error.
PLATFORM_EXPORT DWORD GetEnvironmentVariableW(const WideChar* name, WideChar* buffer, DWORD size) noexcept;

// Replaces each %NAME% by the variable's value; an unknown one stays as it stands. Gives the size needed with the
// terminator, whether it fits or not; 0 on failure.
PLATFORM_EXPORT DWORD ExpandEnvironmentStringsW(const WideChar* source, WideChar* buffer, DWORD size) noexcept;

// One value of an INI file, read anew at each call: UTF-8 with or without a byte-order mark, or UTF-16 little-endian
// with one. Section and key ignore case, blanks around names and values go, one pair of quotes around a value goes,
// lines that begin with ";" are comments. The first section of the name, and its first key, count. Gives the length
// without the terminator; a value that doesn't fit is cut to size - 1. The default takes the place of what is missing;
// the last error then tells why: ERROR_FILE_NOT_FOUND for a missing file, section or key, else what kept it from
// reading.
PLATFORM_EXPORT DWORD GetPrivateProfileStringW(const WideChar* section, const WideChar* key,
                                               const WideChar* defaultValue, WideChar* buffer, DWORD size,
                                               const WideChar* path) noexcept;

}  // namespace Platform
