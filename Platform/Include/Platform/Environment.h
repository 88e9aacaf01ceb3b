// Environment variables and INI files.
#pragma once

#include "Platform/Types.h"

namespace Platform {

// Reads a variable. If the value fits, returns its length without the terminator; otherwise returns the size required
// including it. Returns 0 with ERROR_ENVVAR_NOT_FOUND if the variable does not exist. If the variable is empty and its
// terminator fits, returns 0 and leaves the last error unchanged.
PLATFORM_API DWORD GetEnvironmentVariableW(const WideChar* name, WideChar* buffer, DWORD size) noexcept;

// Replaces each %NAME% by the value of the variable. An unknown variable is left unchanged. Returns the size required
// including the terminator, whether the text fits or not, or 0 on failure.
PLATFORM_API DWORD ExpandEnvironmentStringsW(const WideChar* source, WideChar* buffer, DWORD size) noexcept;

// Reads one value of an INI file. The file is read at each call; it is UTF-8 with or without a byte-order mark, or
// UTF-16 little-endian with one. The names of sections and keys ignore case. Blanks and tabs around names and values
// are removed, then one pair of quotes around the value. Lines that begin with ";" are comments. If a section or a key
// occurs more than once, the first one is used.
//
// Returns the length without the terminator. A value that does not fit is cut to size - 1 characters. If there is no
// value, the result is `defaultValue` and the last error is the reason: ERROR_FILE_NOT_FOUND if the file, the section
// or the key does not exist, otherwise the code of the failed read.
PLATFORM_API DWORD GetPrivateProfileStringW(const WideChar* section, const WideChar* key, const WideChar* defaultValue,
                                            WideChar* buffer, DWORD size, const WideChar* path) noexcept;

}  // namespace Platform
