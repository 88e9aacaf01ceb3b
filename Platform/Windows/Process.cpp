#include "Platform/Process.h"

#include "Native.h"

namespace Platform {

using Windows::As;
using Windows::Layer;
using Windows::Native;

DWORD GetCurrentProcessId() noexcept {
    return ::GetCurrentProcessId();
}

DWORD GetCurrentThreadId() noexcept {
    return ::GetCurrentThreadId();
}

HANDLE GetCurrentProcess() noexcept {
    return Layer(::GetCurrentProcess());
}

HANDLE GetCurrentThread() noexcept {
    return Layer(::GetCurrentThread());
}

void Sleep(DWORD milliseconds) noexcept {
    ::Sleep(milliseconds);
}

const WideChar* GetCommandLineW() noexcept {
    return reinterpret_cast<const WideChar*>(::GetCommandLineW());
}

std::uint64_t VerSetConditionMask(std::uint64_t mask, DWORD type, std::uint8_t condition) noexcept {
    return ::VerSetConditionMask(mask, type, condition);
}

BOOL VerifyVersionInfoW(OSVERSIONINFOEXW* wanted, DWORD types, std::uint64_t mask) noexcept {
    return ::VerifyVersionInfoW(As<::OSVERSIONINFOEXW>(wanted), types, mask);
}

BOOL OpenThreadToken(HANDLE thread, DWORD access, BOOL openAsSelf, HANDLE* token) noexcept {
    return ::OpenThreadToken(Native(thread), access, openAsSelf, Native(token));
}

BOOL SetThreadToken(HANDLE* thread, HANDLE token) noexcept {
    return ::SetThreadToken(Native(thread), Native(token));
}

// The frame of this function is skipped, too. It must exist: the build turns off calls that replace their caller's
// frame.
PLATFORM_NOINLINE std::uint16_t RtlCaptureStackBackTrace(DWORD framesToSkip, DWORD framesToCapture, void** frames,
                                                         DWORD* hash) noexcept {
    return ::RtlCaptureStackBackTrace(framesToSkip + 1, framesToCapture, frames, Native(hash));
}

void OutputDebugStringW(const WideChar* text) noexcept {
    ::OutputDebugStringW(Native(text));
}

}  // namespace Platform
