// The test framework's own place for what a port supplies: its notification needs std::mutex, which the compiler's
// library lacks. The framework uses it only to start threads of its own.
#pragma once

#include "Platform/Threads.h"

#define GTEST_HAS_NOTIFICATION_ 1

namespace testing::internal {

class Notification {
public:
    void Notify() {
        Platform::AcquireSRWLockExclusive(&lock_);
        notified_ = true;
        Platform::ReleaseSRWLockExclusive(&lock_);
        Platform::WakeAllConditionVariable(&condition_);
    }
    void WaitForNotification() {
        Platform::AcquireSRWLockExclusive(&lock_);
        while (!notified_) Platform::SleepConditionVariableSRW(&condition_, &lock_, Platform::INFINITE, 0);
        Platform::ReleaseSRWLockExclusive(&lock_);
    }

private:
    Platform::SRWLOCK lock_ = Platform::SRWLOCK_INIT;
    Platform::CONDITION_VARIABLE condition_ = Platform::CONDITION_VARIABLE_INIT;
    bool notified_ = false;
};

}  // namespace testing::internal
