// Threads, locks and condition variables.
#pragma once

#include <cstddef>

#include "Platform/Types.h"

namespace Platform {

inline constexpr DWORD INFINITE = 0xFFFFFFFF;  // no time-out
inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;

// A lock for one writer or many readers. It is not recursive. It needs no clean-up. It must stay valid until all calls
// that use it have returned. Only the back end uses its words.
struct alignas(8) SRWLOCK {
    std::uint32_t words[2];
};
static_assert(sizeof(SRWLOCK) == 8);
inline constexpr SRWLOCK SRWLOCK_INIT = {};

// A condition variable: threads wait with it until they are woken. It needs no clean-up and must stay valid until all
// calls that use it have returned.
struct alignas(8) CONDITION_VARIABLE {
    std::uint32_t words[2];
};
static_assert(sizeof(CONDITION_VARIABLE) == 8);
inline constexpr CONDITION_VARIABLE CONDITION_VARIABLE_INIT = {};

// Acquire and release a lock, exclusively (for writing) or shared (for reading). Waiting threads get the lock in no
// particular order. A thread must not acquire a lock that it already holds, exclusively or shared. A lock must be
// released by the thread that acquired it. TryAcquireSRWLockExclusive never waits; it returns TRUE if it acquired the
// lock.
PLATFORM_API void AcquireSRWLockExclusive(SRWLOCK* lock) noexcept;
PLATFORM_API BOOL TryAcquireSRWLockExclusive(SRWLOCK* lock) noexcept;
PLATFORM_API void ReleaseSRWLockExclusive(SRWLOCK* lock) noexcept;
PLATFORM_API void AcquireSRWLockShared(SRWLOCK* lock) noexcept;
PLATFORM_API void ReleaseSRWLockShared(SRWLOCK* lock) noexcept;

// Releases the lock, which the caller must hold exclusively, and sleeps; no wake between the two is missed. The sleep
// ends when the thread is woken or after `milliseconds` of a monotonic clock. Then the call acquires the lock again. It
// returns FALSE with ERROR_TIMEOUT if the time has passed. It may also return TRUE although no thread has called a
// function below. If `flags` is not 0, it fails with ERROR_INVALID_PARAMETER and does not release the lock.
PLATFORM_API BOOL SleepConditionVariableSRW(CONDITION_VARIABLE* condition, SRWLOCK* lock, DWORD milliseconds,
                                            DWORD flags) noexcept;
// Wake one sleeping thread, or all of them. The caller need not hold the lock.
PLATFORM_API void WakeConditionVariable(CONDITION_VARIABLE* condition) noexcept;
PLATFORM_API void WakeAllConditionVariable(CONDITION_VARIABLE* condition) noexcept;

// The function that a thread runs. Its result is ignored.
using LPTHREAD_START_ROUTINE = DWORD (*)(void* argument) noexcept;

// Starts a thread and returns its handle. The caller must close the handle, which stays valid after the thread has
// ended; closing it does not end the thread. Returns null on failure: with ERROR_MAX_THRDS_REACHED if there are too
// many threads, with ERROR_NOT_ENOUGH_MEMORY, or with another code of the system. All arguments except `routine` and
// `argument` must be null or 0, otherwise the call fails with ERROR_INVALID_PARAMETER. The stack has the system's
// default size.
PLATFORM_API HANDLE CreateThread(void* security, std::size_t stackSize, LPTHREAD_START_ROUTINE routine, void* argument,
                                 DWORD flags, DWORD* threadId) noexcept;

// Waits until the thread has ended and no longer exists in the process. Returns WAIT_OBJECT_0. Returns WAIT_FAILED with
// ERROR_INVALID_HANDLE if the handle is not that of a thread, and with ERROR_INVALID_PARAMETER if `milliseconds` is not
// INFINITE. Any number of threads may wait for a thread, but a thread must not wait for itself.
PLATFORM_API DWORD WaitForSingleObject(HANDLE thread, DWORD milliseconds) noexcept;

}  // namespace Platform
