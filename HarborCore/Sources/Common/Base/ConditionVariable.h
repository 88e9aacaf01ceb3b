// A condition variable over that of the platform. Its waits count on the monotonic clock.
#pragma once

#include <algorithm>

#include "Common/Base/Lock.h"
#include "Common/Base/MonotonicClock.h"

namespace Harbor {

// Constant-initialised. The lock given to a wait is held by the caller: it is free during the sleep, and held again
// when the wait returns and whenever the predicate is asked.
class ConditionVariable {
public:
    constexpr ConditionVariable() noexcept = default;
    ConditionVariable(const ConditionVariable&) = delete;
    ConditionVariable& operator=(const ConditionVariable&) = delete;

    // Until the predicate is true.
    template <class Predicate>
    void Wait(UniqueLock& lock, Predicate predicate) noexcept {
        while (!predicate()) Sleep(lock, Platform::INFINITE);
    }

    // Until the predicate is true or the deadline has come. Returns the predicate's last answer. Also a deadline that
    // has passed frees the lock for a moment, unless the predicate is true at once.
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
