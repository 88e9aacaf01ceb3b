// Threads, locks and condition variables.
#pragma once

#include <cstddef>

#include "Platform/Types.h"

namespace Platform {

inline constexpr DWORD INFINITE = 0xFFFFFFFF;  // a time-out that never comes
inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;

// A lock for one writer or many readers, not recursive. It needs no clean-up, and must outlive the calls that are made
// for it. Only the back end reads its words.
struct alignas(8) SRWLOCK {
    std::uint32_t words[2];
};
static_assert(sizeof(SRWLOCK) == 8);
inline constexpr SRWLOCK SRWLOCK_INIT = {};

// Waits for threads that wait with it until they are woken. As for the lock: no clean-up, outlives its calls.
struct alignas(8) CONDITION_VARIABLE {
    std::uint32_t words[2];
};
static_assert(sizeof(CONDITION_VARIABLE) == 8);
inline constexpr CONDITION_VARIABLE CONDITION_VARIABLE_INIT = {};

// Exclusive (for writing) and shared (for reading). Neither kind is fair. A thread must not acquire a lock that it
// holds, in whichever way, and only the thread that acquired a lock releases it. TryAcquireSRWLockExclusive returns
// TRUE if it acquired the lock, and never waits.
PLATFORM_EXPORT void AcquireSRWLockExclusive(SRWLOCK* lock) noexcept;
PLATFORM_EXPORT BOOL TryAcquireSRWLockExclusive(SRWLOCK* lock) noexcept;
PLATFORM_EXPORT void ReleaseSRWLockExclusive(SRWLOCK* lock) noexcept;
PLATFORM_EXPORT void AcquireSRWLockShared(SRWLOCK* lock) noexcept;
PLATFORM_EXPORT void ReleaseSRWLockShared(SRWLOCK* lock) noexcept;

// Releases the lock, which the caller holds exclusively, and sleeps as one step, until a wake or for that many
// milliseconds of a monotonic clock; then acquires the lock again. Returns FALSE with ERROR_TIMEOUT at the end of the
// time. A wake may come without a call of the functions below. Flags other than 0 are ERROR_INVALID_PARAMETER: the lock
// stays held.
PLATFORM_EXPORT BOOL SleepConditionVariableSRW(CONDITION_VARIABLE* condition, SRWLOCK* lock, DWORD milliseconds,
                                               DWORD flags) noexcept;
// Wake one sleeping thread, or all, with the lock held or not.
PLATFORM_EXPORT void WakeConditionVariable(CONDITION_VARIABLE* condition) noexcept;
PLATFORM_EXPORT void WakeAllConditionVariable(CONDITION_VARIABLE* condition) noexcept;

// What a thread runs. Nobody reads the result.
using LPTHREAD_START_ROUTINE = DWORD (*)(void* argument) noexcept;

// Starts a thread and returns its handle, which stays valid after the thread's end and which the caller closes. Closing
// it doesn't end the thread. Returns null with ERROR_MAX_THRDS_REACHED if there are too many threads, with
// ERROR_NOT_ENOUGH_MEMORY, or with the code of another refusal of the system. Everything but the routine and its
// argument must be null or 0, else ERROR_INVALID_PARAMETER: the stack has the system's default size.
PLATFORM_EXPORT HANDLE CreateThread(void* security, std::size_t stackSize, LPTHREAD_START_ROUTINE routine,
                                    void* argument, DWORD flags, DWORD* threadId) noexcept;

// Waits until the thread of the handle has ended, and is gone from the process. Returns WAIT_OBJECT_0, or WAIT_FAILED
// with ERROR_INVALID_HANDLE for what is no thread and with ERROR_INVALID_PARAMETER for another time-out than INFINITE.
// Any number of threads may wait, but not the one that is waited for.
PLATFORM_EXPORT DWORD WaitForSingleObject(HANDLE thread, DWORD milliseconds) noexcept;

}  // namespace Platform
