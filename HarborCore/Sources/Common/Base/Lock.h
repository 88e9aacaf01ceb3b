// Locks over those of the platform, to be used with the scope guards of the standard library. All are
// constant-initialised and need no end, so that they may be globals.
#pragma once

#include <atomic>
#include <mutex>

#include "Platform/Threads.h"

namespace Harbor {

// For one thread at a time, not recursive.
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
using UniqueLock = std::unique_lock<Lock>;  // for waits, and for a lock that is let go before the end of its scope

// For many readers or one writer, not recursive.
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

// Tells the threads of the process apart for as long as they live, at less cost than the system's ids.
using ThreadMark = const void*;
inline ThreadMark MarkOfThisThread() noexcept {
    static constinit thread_local char mark = 0;
    return &mark;
}

// A Lock that knows which thread holds it.
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

    // Any thread may ask. The answer holds until the thread itself changes it.
    [[nodiscard]] bool IsHeldByThisThread() const noexcept {
        return holder_.load(std::memory_order_relaxed) == MarkOfThisThread();
    }

private:
    Lock lock_;
    std::atomic<ThreadMark> holder_{nullptr};
};

// A recursive lock: its holder may take it again, and releases it as many times.
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
