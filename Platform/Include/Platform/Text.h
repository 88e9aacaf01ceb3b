// Conversion and formatting of text.
#pragma once

#include "Platform/Types.h"

namespace Platform {

inline constexpr DWORD CP_UTF8 = 65001;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 8;

// Convert between UTF-8 and UTF-16. Lengths and sizes are in units of the text. A length of -1 is a text that ends with
// a 0, which is converted, too. Return the number of units written, the number required if `size` is 0, or 0 on
// failure. Malformed input becomes U+FFFD, or ERROR_NO_UNICODE_TRANSLATION with MB_ERR_INVALID_CHARS, which only
// MultiByteToWideChar accepts. The only code page is CP_UTF8.
PLATFORM_API int MultiByteToWideChar(DWORD codePage, DWORD flags, const char* text, int length, WideChar* buffer,
                                     int size) noexcept;
PLATFORM_API int WideCharToMultiByte(DWORD codePage, DWORD flags, const WideChar* text, int length, char* buffer,
                                     int size, const char* defaultChar, BOOL* usedDefault) noexcept;

struct NUMBERFMTW {
    std::uint32_t NumDigits;
    std::uint32_t LeadingZero;
    std::uint32_t Grouping;
    const WideChar* lpDecimalSep;
    const WideChar* lpThousandSep;
    std::uint32_t NegativeOrder;
};
inline constexpr DWORD LOCALE_INVARIANT = 0x7F;

// Formats a plain decimal number ("-1234.567"), rounded to `NumDigits` digits after the decimal separator.
// `NegativeOrder` must be 1, which puts "-" in front of the number. Returns the size written including the terminator,
// the size required if `size` is 0, or 0 on failure.
PLATFORM_API int GetNumberFormatW(DWORD locale, DWORD flags, const WideChar* number, const NUMBERFMTW* format,
                                  WideChar* buffer, int size) noexcept;

}  // namespace Platform
