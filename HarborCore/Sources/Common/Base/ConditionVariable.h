// A condition variable based on that of the platform. Deadlines are times of the monotonic clock.
#pragma once

#include <algorithm>

#include "Common/Base/Lock.h"
#include "Common/Base/MonotonicClock.h"

namespace Harbor {

// Constant-initialised. The caller of a wait must hold the lock. The wait releases the lock while the thread sleeps;
// the lock is held when the predicate is called and when the wait returns.
class ConditionVariable {
public:
    constexpr ConditionVariable() noexcept = default;
    ConditionVariable(const ConditionVariable&) = delete;
    ConditionVariable& operator=(const ConditionVariable&) = delete;

    // Waits until the predicate returns true.
    template <class Predicate>
    void Wait(UniqueLock& lock, Predicate predicate) noexcept {
        while (!predicate()) Sleep(lock, Platform::INFINITE);
    }

    // Waits until the predicate returns true or the deadline has passed. Returns the last result of the predicate. If
    // the first call of the predicate returns false, the lock is released for a moment even if the deadline has passed.
    template <class Predicate>
    [[nodiscard]] bool WaitUntil(UniqueLock& lock, MonotonicClock::time_point deadline, Predicate predicate) noexcept {
        while (!predicate()) {
            Sleep(lock, MillisecondsUntil(deadline));
            if (MonotonicClock::now() >= deadline) return predicate();
        }
        return true;
    }

    void NotifyOne() noexcept { Platform::WakeConditionVariable(&native_); }
    void NotifyAll() noexcept { Platform::WakeAllConditionVariable(&native_); }

private:
    // Rounded up. A deadline that is further away than the platform can express is waited for in several sleeps.
    static Platform::DWORD MillisecondsUntil(MonotonicClock::time_point deadline) noexcept {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - MonotonicClock::now()).count();
        constexpr std::int64_t longest = Platform::INFINITE - 1;
        return static_cast<Platform::DWORD>(std::clamp<std::int64_t>(left, 0, longest));
    }

    void Sleep(UniqueLock& lock, Platform::DWORD milliseconds) noexcept {
        Platform::SleepConditionVariableSRW(&native_, lock.mutex()->Native(), milliseconds, 0);
    }

    Platform::CONDITION_VARIABLE native_ = Platform::CONDITION_VARIABLE_INIT;
};

}  // namespace Harbor
