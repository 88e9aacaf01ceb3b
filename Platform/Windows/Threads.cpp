#include "Platform/Threads.h"

#include "Native.h"

namespace Platform {

using Windows::As;
using Windows::Layer;
using Windows::Native;

namespace {

::SRWLOCK* NativeLock(SRWLOCK* lock) noexcept {
    return As<::SRWLOCK>(lock);
}

::CONDITION_VARIABLE* NativeCondition(CONDITION_VARIABLE* condition) noexcept {
    return As<::CONDITION_VARIABLE>(condition);
}

}  // namespace

void AcquireSRWLockExclusive(SRWLOCK* lock) noexcept {
    ::AcquireSRWLockExclusive(NativeLock(lock));
}

BOOL TryAcquireSRWLockExclusive(SRWLOCK* lock) noexcept {
    return ::TryAcquireSRWLockExclusive(NativeLock(lock));
}

void ReleaseSRWLockExclusive(SRWLOCK* lock) noexcept {
    ::ReleaseSRWLockExclusive(NativeLock(lock));
}

void AcquireSRWLockShared(SRWLOCK* lock) noexcept {
    ::AcquireSRWLockShared(NativeLock(lock));
}

void ReleaseSRWLockShared(SRWLOCK* lock) noexcept {
    ::ReleaseSRWLockShared(NativeLock(lock));
}

BOOL SleepConditionVariableSRW(CONDITION_VARIABLE* condition, SRWLOCK* lock, DWORD milliseconds, DWORD flags) noexcept {
    return ::SleepConditionVariableSRW(NativeCondition(condition), NativeLock(lock), milliseconds, flags);
}

void WakeConditionVariable(CONDITION_VARIABLE* condition) noexcept {
    ::WakeConditionVariable(NativeCondition(condition));
}

void WakeAllConditionVariable(CONDITION_VARIABLE* condition) noexcept {
    ::WakeAllConditionVariable(NativeCondition(condition));
}

HANDLE CreateThread(void* security, std::size_t stackSize, LPTHREAD_START_ROUTINE routine, void* argument, DWORD flags,
                    DWORD* threadId) noexcept {
    return Layer(::CreateThread(static_cast<::SECURITY_ATTRIBUTES*>(security), stackSize,
                                reinterpret_cast<::LPTHREAD_START_ROUTINE>(routine), argument, flags,
                                Native(threadId)));
}

DWORD WaitForSingleObject(HANDLE thread, DWORD milliseconds) noexcept {
    return ::WaitForSingleObject(Native(thread), milliseconds);
}

}  // namespace Platform
