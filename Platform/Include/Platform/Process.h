// The process, its threads and their identity, the version of the system, the call stack, the debugger's output.
#pragma once

#include "Platform/Types.h"

namespace Platform {

PLATFORM_EXPORT DWORD GetCurrentProcessId() noexcept;
PLATFORM_EXPORT DWORD GetCurrentThreadId() noexcept;
PLATFORM_EXPORT HANDLE GetCurrentProcess() noexcept;  // never closed
PLATFORM_EXPORT HANDLE GetCurrentThread() noexcept;   // never closed
PLATFORM_EXPORT void Sleep(DWORD milliseconds) noexcept;

// The command line as one text, which lives as long as the process.
PLATFORM_EXPORT const WideChar* GetCommandLineW() noexcept;

struct OSVERSIONINFOEXW {
    DWORD dwMajorVersion, dwMinorVersion;
    std::uint16_t wServicePackMajor;
};
inline constexpr DWORD VER_MINORVERSION = 1;
inline constexpr DWORD VER_MAJORVERSION = 2;
inline constexpr DWORD VER_SERVICEPACKMAJOR = 0x20;
inline constexpr std::uint8_t VER_GREATER_EQUAL = 3;
PLATFORM_EXPORT std::uint64_t VerSetConditionMask(std::uint64_t mask, DWORD type, std::uint8_t condition) noexcept;
// True if the running system meets every condition of the mask.
PLATFORM_EXPORT BOOL VerifyVersionInfoW(OSVERSIONINFOEXW* wanted, DWORD types, std::uint64_t mask) noexcept;

// The identity that a thread has taken on. OpenThreadToken fails with ERROR_NO_TOKEN where the thread has none.
inline constexpr DWORD TOKEN_IMPERSONATE = 4;
PLATFORM_EXPORT BOOL OpenThreadToken(HANDLE thread, DWORD access, BOOL openAsSelf, HANDLE* token) noexcept;
// A null thread means the calling one; a null token reverts to the identity of the process.
PLATFORM_EXPORT BOOL SetThreadToken(HANDLE* thread, HANDLE token) noexcept;

// Return addresses of the call stack: the first is the address in the function that calls this one, unless frames
// are skipped. Gives how many were stored. The hash isn't computed: pass null.
PLATFORM_EXPORT std::uint16_t RtlCaptureStackBackTrace(DWORD framesToSkip, DWORD framesToCapture, void** frames,
                                                       DWORD* hash) noexcept;

// A channel apart from every log: the debugger's output, or standard error.
PLATFORM_EXPORT void OutputDebugStringW(const WideChar* text) noexcept;

}  // namespace Platform
