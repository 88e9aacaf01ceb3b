// The texts of codes, from the system or from a message module.
//
// On Windows a message module is a library with a message table, which the message compiler makes. On POSIX it is a
// UTF-8 text file. Each line of the file is one message: the code in the form 0x80040201, the language id (0 for any)
// and the text, separated by tabs. In the text "\n", "\t" and "\\" are a line feed, a tab and a "\". Empty lines and
// lines that begin with ";" are ignored. LoadLibraryExW opens both.
#pragma once

#include "Platform/Types.h"

namespace Platform {

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_HMODULE = 0x800;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

// Returns the id of the user's language. On POSIX LC_ALL, LC_MESSAGES or LANG names it; 0x0409 if that is unknown.
PLATFORM_API std::uint16_t GetUserDefaultLangID() noexcept;

// Returns the text of a code in a language; language 0 is any. `flags` must be FORMAT_MESSAGE_ALLOCATE_BUFFER,
// FORMAT_MESSAGE_IGNORE_INSERTS and either FORMAT_MESSAGE_FROM_HMODULE, with the module in `source`, or
// FORMAT_MESSAGE_FROM_SYSTEM. `buffer` is the address of a pointer to the text, which the caller frees with LocalFree.
// The system's texts end with ".\r\n" or "\r\n"; on POSIX they are the published English ones.
//
// Returns the length without the terminator, or 0 on failure: ERROR_MR_MID_NOT_FOUND for an unknown code,
// ERROR_RESOURCE_LANG_NOT_FOUND if the system has no texts in the language, ERROR_RESOURCE_TYPE_NOT_FOUND if the module
// is not an open message module.
PLATFORM_API DWORD FormatMessageW(DWORD flags, const void* source, DWORD code, DWORD language, WideChar* buffer,
                                  DWORD size, void* arguments) noexcept;
PLATFORM_API void* LocalFree(void* memory) noexcept;

}  // namespace Platform
