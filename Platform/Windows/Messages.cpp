#include "Platform/Messages.h"

#include "Native.h"

namespace Platform {

using Windows::Native;

std::uint16_t GetUserDefaultLangID() noexcept {
    return ::GetUserDefaultLangID();
}

DWORD FormatMessageW(DWORD flags, const void* source, DWORD code, DWORD language, WideChar* buffer, DWORD size,
                     void* arguments) noexcept {
    return ::FormatMessageW(flags, source, code, language, Native(buffer), size, static_cast<va_list*>(arguments));
}

void* LocalFree(void* memory) noexcept {
    return ::LocalFree(memory);
}

}  // namespace Platform
