// The process, its threads and their identity, the version of the system, the call stack, the debugger's output.
#pragma once

#include "Platform/Types.h"

namespace Platform {

PLATFORM_API DWORD GetCurrentProcessId() noexcept;
PLATFORM_API DWORD GetCurrentThreadId() noexcept;
PLATFORM_API HANDLE GetCurrentProcess() noexcept;  // need not be closed
PLATFORM_API HANDLE GetCurrentThread() noexcept;   // need not be closed
PLATFORM_API void Sleep(DWORD milliseconds) noexcept;

// Returns the command line as one text, which stays valid until the process ends.
PLATFORM_API const WideChar* GetCommandLineW() noexcept;

// Only the versions and the service pack are compared.
struct OSVERSIONINFOEXW {
    DWORD dwOSVersionInfoSize = sizeof(OSVERSIONINFOEXW);
    DWORD dwMajorVersion = 0, dwMinorVersion = 0, dwBuildNumber = 0, dwPlatformId = 0;
    WideChar szCSDVersion[128] = {};
    std::uint16_t wServicePackMajor = 0, wServicePackMinor = 0, wSuiteMask = 0;
    std::uint8_t wProductType = 0, wReserved = 0;
};
static_assert(sizeof(OSVERSIONINFOEXW) == 284);
inline constexpr DWORD VER_MINORVERSION = 1;
inline constexpr DWORD VER_MAJORVERSION = 2;
inline constexpr DWORD VER_SERVICEPACKMAJOR = 0x20;
inline constexpr std::uint8_t VER_GREATER_EQUAL = 3;
// Returns the mask with the condition for one version part added.
PLATFORM_API std::uint64_t VerSetConditionMask(std::uint64_t mask, DWORD type, std::uint8_t condition) noexcept;
// Returns TRUE if the running system meets every condition of the mask, FALSE with ERROR_OLD_WIN_VERSION if it does
// not.
PLATFORM_API BOOL VerifyVersionInfoW(OSVERSIONINFOEXW* wanted, DWORD types, std::uint64_t mask) noexcept;

// The identity that a thread impersonates. OpenThreadToken fails with ERROR_NO_TOKEN if the thread impersonates nobody.
inline constexpr DWORD TOKEN_IMPERSONATE = 4;
PLATFORM_API BOOL OpenThreadToken(HANDLE thread, DWORD access, BOOL openAsSelf, HANDLE* token) noexcept;
// Sets the identity of a thread. If `thread` is null, this is the calling thread. A null token restores the identity of
// the process.
PLATFORM_API BOOL SetThreadToken(HANDLE* thread, HANDLE token) noexcept;

// Stores the return addresses of the call stack. If no frame is skipped, the first one is in the function that called
// this one. Returns the number of addresses stored. No hash is computed: `hash` must be null.
PLATFORM_API std::uint16_t RtlCaptureStackBackTrace(DWORD framesToSkip, DWORD framesToCapture, void** frames,
                                                    DWORD* hash) noexcept;

// Writes to the debugger; on POSIX, where there is none, to standard error. This output is independent of every log.
PLATFORM_API void OutputDebugStringW(const WideChar* text) noexcept;

}  // namespace Platform
