// The lock is two words: its state, and a counter on which writers sleep. Readers sleep on the state. Writers come
// first: a reader waits as long as a writer does.
#include "ErrnoFailure.h"
#include "Futex.h"
#include "Platform/Threads.h"

namespace Platform {

using namespace Posix;

namespace {

// The state: how many readers hold the lock, or that a writer does, and who sleeps.
constexpr std::uint32_t Reader = 1;
constexpr std::uint32_t HolderMask = (1u << 30) - 1;
constexpr std::uint32_t WriterHolds = HolderMask;
constexpr std::uint32_t ReadersWait = 1u << 30;
constexpr std::uint32_t WritersWait = 1u << 31;

constexpr int SpinCount = 100;  // looks at a held lock before the thread sleeps

std::uint32_t& StateWord(SRWLOCK* lock) noexcept {
    return lock->words[0];
}
FutexWord StateOf(SRWLOCK* lock) noexcept {
    return FutexWord{StateWord(lock)};
}
std::uint32_t& WriterTurnsWord(SRWLOCK* lock) noexcept {
    return lock->words[1];
}
FutexWord WriterTurnsOf(SRWLOCK* lock) noexcept {
    return FutexWord{WriterTurnsWord(lock)};
}

constexpr bool IsFree(std::uint32_t state) noexcept {
    return (state & HolderMask) == 0;
}
constexpr bool IsOpenToReaders(std::uint32_t state) noexcept {
    return (state & HolderMask) < HolderMask - 1 && (state & (ReadersWait | WritersWait)) == 0;
}

template <class Condition>
std::uint32_t SpinUntil(FutexWord state, Condition condition) noexcept {
    std::uint32_t seen = state.load(std::memory_order_relaxed);
    for (int i = 0; i < SpinCount && !condition(seen); ++i) seen = state.load(std::memory_order_relaxed);
    return seen;
}

// Whoever sleeps is woken by who leaves; once somebody sleeps, spinning would only overtake.
std::uint32_t SpinAsWriter(FutexWord state) noexcept {
    return SpinUntil(state, [](std::uint32_t seen) { return IsFree(seen) || (seen & WritersWait) != 0; });
}
std::uint32_t SpinAsReader(FutexWord state) noexcept {
    return SpinUntil(state, [](std::uint32_t seen) {
        return (seen & HolderMask) != WriterHolds || (seen & (ReadersWait | WritersWait)) != 0;
    });
}

bool SetBit(FutexWord state, std::uint32_t& seen, std::uint32_t bit) noexcept {
    return (seen & bit) != 0 || state.compare_exchange_strong(seen, seen | bit, std::memory_order_relaxed);
}

void WaitForExclusive(SRWLOCK* lock) noexcept {
    const FutexWord state = StateOf(lock);
    const FutexWord turns = WriterTurnsOf(lock);
    // A writer that was woken doesn't know whether others go on sleeping, so it keeps the bit for them.
    std::uint32_t othersWait = 0;
    std::uint32_t seen = SpinAsWriter(state);
    for (;;) {
        if (IsFree(seen)) {
            if (state.compare_exchange_weak(seen, seen | WriterHolds | othersWait, std::memory_order_acquire,
                                            std::memory_order_relaxed)) {
                return;
            }
            continue;
        }
        if (!SetBit(state, seen, WritersWait)) continue;
        othersWait = WritersWait;
        const std::uint32_t turn = turns.load(std::memory_order_acquire);
        // The lock may have become free before the turn was read: its wake would be missed.
        seen = state.load(std::memory_order_relaxed);
        if (IsFree(seen) || (seen & WritersWait) == 0) continue;
        FutexWait(WriterTurnsWord(lock), turn, nullptr);
        seen = SpinAsWriter(state);
    }
}

void WaitForShared(SRWLOCK* lock) noexcept {
    const FutexWord state = StateOf(lock);
    std::uint32_t seen = SpinAsReader(state);
    for (;;) {
        if (IsOpenToReaders(seen)) {
            if (state.compare_exchange_weak(seen, seen + Reader, std::memory_order_acquire,
                                            std::memory_order_relaxed)) {
                return;
            }
            continue;
        }
        if (!SetBit(state, seen, ReadersWait)) continue;
        FutexWait(StateWord(lock), seen | ReadersWait, nullptr);
        seen = SpinAsReader(state);
    }
}

bool WakeWriter(SRWLOCK* lock) noexcept {
    WriterTurnsOf(lock).fetch_add(1, std::memory_order_release);
    return FutexWake(WriterTurnsWord(lock), 1);
}

// For who left the lock free with sleepers. Where another thread acquires it meanwhile, that one wakes them later.
PLATFORM_NOINLINE void WakeSleepers(SRWLOCK* lock, std::uint32_t seen) noexcept {
    const FutexWord state = StateOf(lock);
    const auto replace = [&](std::uint32_t by) {
        return state.compare_exchange_strong(seen, by, std::memory_order_relaxed);
    };
    if (seen == WritersWait && replace(0)) {
        WakeWriter(lock);
        return;
    }
    if (seen == (ReadersWait | WritersWait)) {
        if (!replace(ReadersWait) || WakeWriter(lock)) return;
        // No writer slept after all, and no other call would wake the readers.
        seen = ReadersWait;
    }
    if (seen == ReadersWait && replace(0)) FutexWake(StateWord(lock), INT_MAX);
}

}  // namespace

void AcquireSRWLockExclusive(SRWLOCK* lock) noexcept {
    if (std::uint32_t free = 0; !StateOf(lock).compare_exchange_strong(free, WriterHolds, std::memory_order_acquire,
                                                                       std::memory_order_relaxed)) [[unlikely]] {
        WaitForExclusive(lock);
    }
}

BOOL TryAcquireSRWLockExclusive(SRWLOCK* lock) noexcept {
    const FutexWord state = StateOf(lock);
    std::uint32_t seen = state.load(std::memory_order_relaxed);
    while (IsFree(seen)) {
        if (state.compare_exchange_weak(seen, seen | WriterHolds, std::memory_order_acquire,
                                        std::memory_order_relaxed)) {
            return TRUE;
        }
    }
    return FALSE;
}

void ReleaseSRWLockExclusive(SRWLOCK* lock) noexcept {
    const std::uint32_t left = StateOf(lock).fetch_sub(WriterHolds, std::memory_order_release) - WriterHolds;
    if (left != 0) [[unlikely]]
        WakeSleepers(lock, left);
}

void AcquireSRWLockShared(SRWLOCK* lock) noexcept {
    const FutexWord state = StateOf(lock);
    std::uint32_t seen = state.load(std::memory_order_relaxed);
    if (!IsOpenToReaders(seen) || !state.compare_exchange_strong(seen, seen + Reader, std::memory_order_acquire,
                                                                 std::memory_order_relaxed)) [[unlikely]] {
        WaitForShared(lock);
    }
}

void ReleaseSRWLockShared(SRWLOCK* lock) noexcept {
    const std::uint32_t left = StateOf(lock).fetch_sub(Reader, std::memory_order_release) - Reader;
    // Readers sleep only while a writer sleeps or holds the lock.
    if (IsFree(left) && (left & WritersWait) != 0) [[unlikely]]
        WakeSleepers(lock, left);
}

namespace {

constexpr std::int64_t MillisecondsPerSecond = 1000;
constexpr long NanosecondsPerMillisecond = 1'000'000;
constexpr long NanosecondsPerSecond = 1'000'000'000;

timespec MonotonicTimeIn(DWORD milliseconds) noexcept {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    time.tv_sec += milliseconds / MillisecondsPerSecond;
    time.tv_nsec += static_cast<long>(milliseconds % MillisecondsPerSecond) * NanosecondsPerMillisecond;
    if (time.tv_nsec >= NanosecondsPerSecond) {
        time.tv_nsec -= NanosecondsPerSecond;
        ++time.tv_sec;
    }
    return time;
}

// The words of a condition variable: how many wakes there were, and how many threads sleep or are about to.
std::uint32_t& WakesWord(CONDITION_VARIABLE* condition) noexcept {
    return condition->words[0];
}
FutexWord SleepersOf(CONDITION_VARIABLE* condition) noexcept {
    return FutexWord{condition->words[1]};
}

void Wake(CONDITION_VARIABLE* condition, int count) noexcept {
    FutexWord{WakesWord(condition)}.fetch_add(1);
    // In one order with a sleeper's two steps: it is counted here, or it has not yet read the wakes.
    if (SleepersOf(condition).load() != 0) FutexWake(WakesWord(condition), count);
}

}  // namespace

BOOL SleepConditionVariableSRW(CONDITION_VARIABLE* condition, SRWLOCK* lock, DWORD milliseconds, DWORD flags) noexcept {
    if (flags != 0) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    timespec deadline{};
    if (milliseconds != INFINITE) deadline = MonotonicTimeIn(milliseconds);
    SleepersOf(condition).fetch_add(1);
    const std::uint32_t wakes = FutexWord{WakesWord(condition)}.load();
    ReleaseSRWLockExclusive(lock);
    const bool inTime = FutexWait(WakesWord(condition), wakes, milliseconds != INFINITE ? &deadline : nullptr);
    SleepersOf(condition).fetch_sub(1);
    AcquireSRWLockExclusive(lock);
    return inTime ? TRUE : Fail(ERROR_TIMEOUT, FALSE);
}

void WakeConditionVariable(CONDITION_VARIABLE* condition) noexcept {
    Wake(condition, 1);
}

void WakeAllConditionVariable(CONDITION_VARIABLE* condition) noexcept {
    Wake(condition, INT_MAX);
}

}  // namespace Platform
