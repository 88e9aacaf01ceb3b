#include "Platform/Text.h"

#include "Native.h"

namespace Platform {

using Windows::Native;

int MultiByteToWideChar(DWORD codePage, DWORD flags, const char* text, int length, WideChar* buffer,
                        int size) noexcept {
    return ::MultiByteToWideChar(codePage, flags, text, length, Native(buffer), size);
}

int WideCharToMultiByte(DWORD codePage, DWORD flags, const WideChar* text, int length, char* buffer, int size,
                        const char* defaultChar, BOOL* usedDefault) noexcept {
    return ::WideCharToMultiByte(codePage, flags, Native(text), length, buffer, size, defaultChar, usedDefault);
}

int GetNumberFormatW(DWORD locale, DWORD flags, const WideChar* number, const NUMBERFMTW* format, WideChar* buffer,
                     int size) noexcept {
    static_assert(sizeof(NUMBERFMTW) == sizeof(::NUMBERFMTW));
    return ::GetNumberFormatW(locale, flags, Native(number), reinterpret_cast<const ::NUMBERFMTW*>(format),
                              Native(buffer), size);
}

}  // namespace Platform
