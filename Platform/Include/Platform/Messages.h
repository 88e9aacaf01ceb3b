// Texts of codes, from the system or from a message module. A message module is a UTF-8 text file, one message a
// line: code as 0x80040201, language id (0 for any), text, separated by tabs. "\n", "\t" and "\\" in the text stand for
// a line feed, a tab and a "\"; empty lines and lines that begin with ";" are skipped. It is opened by LoadLibraryExW.
#pragma once

#include "Platform/Types.h"

namespace Platform {

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_HMODULE = 0x800;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

// The language of the user as LC_ALL, LC_MESSAGES or LANG names it, 0x0409 if it is none that is known.
PLATFORM_EXPORT std::uint16_t GetUserDefaultLangID() noexcept;

// The text of a code in a language, 0 being any. Both flags of the first pair are required, and one of the second;
// `buffer` is then the address of a pointer, which the caller frees with LocalFree. Gives the length, or 0 with
// ERROR_MR_MID_NOT_FOUND for an unknown code, ERROR_RESOURCE_LANG_NOT_FOUND for a language that the system doesn't
// speak, or ERROR_RESOURCE_TYPE_NOT_FOUND for a module without texts. The system's texts are the published English
// ones and end in ".\r\n" or "\r\n".
PLATFORM_EXPORT DWORD FormatMessageW(DWORD flags, const void* source, DWORD code, DWORD language, WideChar* buffer,
                                     DWORD size, void* arguments) noexcept;
PLATFORM_EXPORT void* LocalFree(void* memory) noexcept;

}  // namespace Platform
