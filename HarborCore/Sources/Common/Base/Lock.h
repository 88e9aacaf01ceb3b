// Locks based on those of the platform. Use them with the scope guards of the standard library. They are
// constant-initialised and need no clean-up, so they may be globals.
#pragma once

#include <atomic>
#include <mutex>

#include "Platform/Threads.h"

namespace Harbor {

// An exclusive lock. It is not recursive.
class Lock {
public:
    constexpr Lock() noexcept = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    void lock() noexcept { Platform::AcquireSRWLockExclusive(&native_); }
    [[nodiscard]] bool try_lock() noexcept { return Platform::TryAcquireSRWLockExclusive(&native_) != Platform::FALSE; }
    void unlock() noexcept { Platform::ReleaseSRWLockExclusive(&native_); }

    Platform::SRWLOCK* Native() noexcept { return &native_; }

private:
    Platform::SRWLOCK native_ = Platform::SRWLOCK_INIT;
};

using LockGuard = std::lock_guard<Lock>;
using UniqueLock = std::unique_lock<Lock>;  // for waits, and to unlock before the end of the scope

// A lock for many readers or one writer. It is not recursive.
class ReaderWriterLock {
public:
    constexpr ReaderWriterLock() noexcept = default;
    ReaderWriterLock(const ReaderWriterLock&) = delete;
    ReaderWriterLock& operator=(const ReaderWriterLock&) = delete;

    void lock() noexcept { Platform::AcquireSRWLockExclusive(&native_); }
    void unlock() noexcept { Platform::ReleaseSRWLockExclusive(&native_); }
    void lock_shared() noexcept { Platform::AcquireSRWLockShared(&native_); }
    void unlock_shared() noexcept { Platform::ReleaseSRWLockShared(&native_); }

private:
    Platform::SRWLOCK native_ = Platform::SRWLOCK_INIT;
};

// Identifies a thread of the process while it runs. It costs less than the system's thread id.
using ThreadMark = const void*;
inline ThreadMark MarkOfThisThread() noexcept {
    static constinit thread_local char mark = 0;
    return &mark;
}

// A Lock that records which thread holds it.
class HolderLock {
public:
    constexpr HolderLock() noexcept = default;

    void lock() noexcept {
        lock_.lock();
        holder_.store(MarkOfThisThread(), std::memory_order_relaxed);
    }
    [[nodiscard]] bool try_lock() noexcept {
        if (!lock_.try_lock()) return false;
        holder_.store(MarkOfThisThread(), std::memory_order_relaxed);
        return true;
    }
    void unlock() noexcept {
        holder_.store(nullptr, std::memory_order_relaxed);
        lock_.unlock();
    }

    // Any thread may call it. The result cannot change until the calling thread acquires or releases the lock.
    [[nodiscard]] bool IsHeldByThisThread() const noexcept {
        return holder_.load(std::memory_order_relaxed) == MarkOfThisThread();
    }

private:
    Lock lock_;
    std::atomic<ThreadMark> holder_{nullptr};
};

// A recursive lock: the thread that holds it may acquire it again, and must release it as often as it has acquired it.
class CriticalSection {
public:
    constexpr CriticalSection() noexcept = default;

    void lock() noexcept {
        if (!lock_.IsHeldByThisThread()) lock_.lock();
        ++depth_;
    }
    [[nodiscard]] bool try_lock() noexcept {
        if (!lock_.IsHeldByThisThread() && !lock_.try_lock()) return false;
        ++depth_;
        return true;
    }
    void unlock() noexcept {
        if (--depth_ == 0) lock_.unlock();
    }

private:
    HolderLock lock_;
    std::uint32_t depth_ = 0;  // guarded by lock_
};

}  // namespace Harbor
