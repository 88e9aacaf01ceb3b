// Conversion and formatting of text.
#pragma once

#include "Platform/Types.h"

namespace Platform {

inline constexpr DWORD CP_UTF8 = 65001;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 8;

// Lengths count units and may be -1 for a text that ends in 0. With a size of 0 they give the size needed, otherwise
// what was written, and 0 on failure. Without MB_ERR_INVALID_CHARS malformed input becomes U+FFFD, with it
// ERROR_NO_UNICODE_TRANSLATION. CP_UTF8 is the one code page there is.
PLATFORM_EXPORT int MultiByteToWideChar(DWORD codePage, DWORD flags, const char* text, int length, WideChar* buffer,
                                        int size) noexcept;
PLATFORM_EXPORT int WideCharToMultiByte(DWORD codePage, DWORD flags, const WideChar* text, int length, char* buffer,
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

// Groups a plain decimal number ("-1234.567") as the format says; negative order 1 puts "-" in front. Digits behind
// NumDigits are rounded off. Gives the size written with the terminator, or 0.
PLATFORM_EXPORT int GetNumberFormatW(DWORD locale, DWORD flags, const WideChar* number, const NUMBERFMTW* format,
                                     WideChar* buffer, int size) noexcept;

}  // namespace Platform
