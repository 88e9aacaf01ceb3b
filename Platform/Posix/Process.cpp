#include "Platform/Process.h"

#include <pthread.h>
#include <unistd.h>
#include <unwind.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <chrono>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "Descriptors.h"
#include "ErrnoFailure.h"
#include "Utf.h"

namespace Platform {

using namespace Common;
using namespace Posix;

namespace {

HANDLE PseudoHandle(std::intptr_t value) noexcept {
    return reinterpret_cast<HANDLE>(value);
}

// Each log line needs both, and a system call for each would be expensive.
constinit std::atomic<DWORD> ProcessId = 0;
constinit thread_local DWORD ThreadId = 0;

// A forked child has the memory of the thread that forked, but other ids.
void ForgetIds() noexcept {
    ProcessId.store(0, std::memory_order_relaxed);
    ThreadId = 0;
}

const bool ForksAreSeen = pthread_atfork(nullptr, nullptr, ForgetIds) == 0;

}  // namespace

DWORD GetCurrentProcessId() noexcept {
    if (const DWORD known = ProcessId.load(std::memory_order_relaxed); known != 0) return known;
    const auto id = static_cast<DWORD>(getpid());
    if (ForksAreSeen) ProcessId.store(id, std::memory_order_relaxed);
    return id;
}

DWORD GetCurrentThreadId() noexcept {
    if (ThreadId != 0) return ThreadId;
    const auto id = static_cast<DWORD>(gettid());
    if (ForksAreSeen) ThreadId = id;
    return id;
}

HANDLE GetCurrentProcess() noexcept {
    return PseudoHandle(-1);
}

HANDLE GetCurrentThread() noexcept {
    return PseudoHandle(-2);
}

void Sleep(DWORD milliseconds) noexcept {
    if (milliseconds == 0) {
        std::this_thread::yield();
    } else {
        std::this_thread::sleep_for(std::chrono::milliseconds{milliseconds});
    }
}

namespace {

std::string Quoted(std::string_view argument) {
    if (!argument.empty() && argument.find_first_of(" \t") == std::string_view::npos) return std::string{argument};
    return '"' + std::string{argument} + '"';
}

std::u16string ReadCommandLine() {
    std::ifstream file{"/proc/self/cmdline", std::ios::binary};
    std::string text;
    for (std::string argument; std::getline(file, argument, '\0');) {
        if (!text.empty()) text += ' ';
        text += Quoted(argument);
    }
    return ToWide(text);
}

// Destroyed when the library is unloaded, after everything that uses it.
constinit std::mutex CommandLineLock;
constinit std::unique_ptr<const std::u16string> CommandLine;

}  // namespace

const WideChar* GetCommandLineW() noexcept {
    const WideChar* const failure = u"";
    return OrOutOfMemory(failure, [] {
        const std::lock_guard guard{CommandLineLock};
        if (!CommandLine) CommandLine = std::make_unique<const std::u16string>(ReadCommandLine());
        return CommandLine->c_str();
    });
}

namespace {

constexpr unsigned BitsPerCondition = 3;
constexpr std::uint64_t ConditionBits = (1u << BitsPerCondition) - 1;

unsigned ShiftOf(DWORD type) noexcept {
    return BitsPerCondition * static_cast<unsigned>(std::countr_zero(type));
}

constexpr OSVERSIONINFOEXW SystemVersion{.dwMajorVersion = 10};

// In the order of comparison: the minor version only counts if the major versions are equal.
struct VersionPart {
    DWORD type;
    DWORD (*read)(const OSVERSIONINFOEXW& version) noexcept;
};
constexpr VersionPart VersionParts[] = {
    {VER_MAJORVERSION, [](const OSVERSIONINFOEXW& version) noexcept -> DWORD { return version.dwMajorVersion; }},
    {VER_MINORVERSION, [](const OSVERSIONINFOEXW& version) noexcept -> DWORD { return version.dwMinorVersion; }},
    {VER_SERVICEPACKMAJOR, [](const OSVERSIONINFOEXW& version) noexcept -> DWORD { return version.wServicePackMajor; }},
};
constexpr DWORD KnownTypes = VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR;

}  // namespace

std::uint64_t VerSetConditionMask(std::uint64_t mask, DWORD type, std::uint8_t condition) noexcept {
    if (!std::has_single_bit(type) || (type & KnownTypes) == 0) return mask;
    return mask | (condition & ConditionBits) << ShiftOf(type);
}

BOOL VerifyVersionInfoW(OSVERSIONINFOEXW* wanted, DWORD types, std::uint64_t mask) noexcept {
    if (wanted == nullptr || types == 0 || (types & ~KnownTypes) != 0) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    for (const VersionPart& part : VersionParts) {
        if ((types & part.type) == 0) continue;
        if ((mask >> ShiftOf(part.type) & ConditionBits) != VER_GREATER_EQUAL) {
            return Fail(ERROR_INVALID_PARAMETER, FALSE);
        }
        const DWORD present = part.read(SystemVersion);
        const DWORD least = part.read(*wanted);
        if (present > least) return TRUE;
        if (present < least) return Fail(ERROR_OLD_WIN_VERSION, FALSE);
    }
    return TRUE;
}

BOOL OpenThreadToken(HANDLE, DWORD, BOOL, HANDLE*) noexcept {
    return Fail(ERROR_NO_TOKEN, FALSE);
}

BOOL SetThreadToken(HANDLE*, HANDLE token) noexcept {
    return token == nullptr ? TRUE : Fail(ERROR_NO_TOKEN, FALSE);
}

namespace {

struct StackCapture {
    std::uint64_t framesToSkip;
    std::size_t capacity;
    void** frames;
    std::size_t count;
};

_Unwind_Reason_Code CaptureFrame(_Unwind_Context* context, void* argument) noexcept {
    auto& capture = *static_cast<StackCapture*>(argument);
    const auto address = _Unwind_GetIP(context);
    if (address == 0 || capture.count == capture.capacity) return _URC_END_OF_STACK;
    if (capture.framesToSkip > 0) {
        --capture.framesToSkip;
    } else {
        capture.frames[capture.count++] = reinterpret_cast<void*>(address);
    }
    return _URC_NO_REASON;
}

}  // namespace

// The walk begins with the frame of the function that starts it. It must be this one, or one frame too many is skipped.
PLATFORM_NOINLINE std::uint16_t RtlCaptureStackBackTrace(DWORD framesToSkip, DWORD framesToCapture, void** frames,
                                                         DWORD*) noexcept {
    if (frames == nullptr) return 0;
    constexpr std::size_t largestCount = std::numeric_limits<std::uint16_t>::max();
    StackCapture capture{std::uint64_t{framesToSkip} + 1, std::min<std::size_t>(framesToCapture, largestCount), frames,
                         0};
    _Unwind_Backtrace(CaptureFrame, &capture);
    return static_cast<std::uint16_t>(capture.count);
}

void OutputDebugStringW(const WideChar* text) noexcept {
    if (text == nullptr) return;
    OrOutOfMemory(FALSE, [&] {
        const std::string bytes = ToUtf8(text);
        return WriteWithoutSignals(STDERR_FILENO, bytes.data(), bytes.size()) == bytes.size() ? TRUE : FALSE;
    });
}

}  // namespace Platform
