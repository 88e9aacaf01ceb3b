#include "Platform/Threads.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <vector>

#include "Platform/Errors.h"
#include "Platform/Files.h"
#include "Platform/Process.h"
#include "Platform/Time.h"
#include "Support/JoiningThread.h"

using namespace Platform;

namespace {

constexpr int Threads = 4;
constexpr int Rounds = 20000;

void RunThreads(auto body) {
    std::vector<JoiningThread> threads;
    for (int i = 0; i < Threads; ++i) threads.emplace_back([&body, i] { body(i); });
}

// By the monotonic clock.
std::int64_t NowInNanoseconds() {
    std::int64_t frequency = 0, counter = 0;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&counter);
    return counter * (1'000'000'000 / frequency);
}

// Ends the process if a wake is lost.
constexpr DWORD LongTime = 60'000;

}  // namespace

TEST(Lock, LetsOneWriterOrManyReadersIn) {
    SRWLOCK lock = SRWLOCK_INIT;
    std::array<int, 2> pair{};  // equal while no writer is inside
    std::atomic<int> readersInside{0};
    RunThreads([&](int thread) {
        for (int i = 0; i < Rounds; ++i) {
            if (thread % 2 == 0 ? i % 8 == 0 : i % 2 == 0) {
                AcquireSRWLockExclusive(&lock);
                ++pair[0];
                ASSERT_EQ(readersInside, 0);
                ++pair[1];
                ReleaseSRWLockExclusive(&lock);
            } else if (i % 3 == 0 && TryAcquireSRWLockExclusive(&lock)) {
                ++pair[0];
                ++pair[1];
                ASSERT_FALSE(TryAcquireSRWLockExclusive(&lock));
                ReleaseSRWLockExclusive(&lock);
            } else {
                AcquireSRWLockShared(&lock);
                ++readersInside;
                ASSERT_EQ(pair[0], pair[1]);
                --readersInside;
                ReleaseSRWLockShared(&lock);
            }
        }
    });
    EXPECT_GE(pair[0], Rounds / 8 * Threads);
    EXPECT_EQ(lock.words[0], SRWLOCK_INIT.words[0]);

    // Two readers are inside at once, and keep a writer out until the last has gone.
    AcquireSRWLockShared(&lock);
    std::atomic<bool> comes{false}, left{false};
    JoiningThread([&] {
        AcquireSRWLockShared(&lock);
        EXPECT_FALSE(TryAcquireSRWLockExclusive(&lock));
        ReleaseSRWLockShared(&lock);
    }).Join();
    const JoiningThread writer([&] {
        comes = true;
        AcquireSRWLockExclusive(&lock);
        EXPECT_TRUE(left);
        ReleaseSRWLockExclusive(&lock);
    });
    while (!comes) Sleep(0);
    left = true;
    ReleaseSRWLockShared(&lock);
}

TEST(ConditionVariable, WakesWhoeverSleepsAndLosesNoWake) {
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE turnCame = CONDITION_VARIABLE_INIT, allDone = CONDITION_VARIABLE_INIT;
    int turn = 0, done = 0;
    RunThreads([&](int thread) {
        for (int round = 0; round < 1000; ++round) {
            AcquireSRWLockExclusive(&lock);
            while (turn % Threads != thread) ASSERT_TRUE(SleepConditionVariableSRW(&turnCame, &lock, LongTime, 0));
            ++turn;
            ReleaseSRWLockExclusive(&lock);
            WakeAllConditionVariable(&turnCame);
        }
        AcquireSRWLockExclusive(&lock);
        if (++done == Threads) WakeConditionVariable(&allDone);
        while (done != Threads) ASSERT_TRUE(SleepConditionVariableSRW(&allDone, &lock, INFINITE, 0));
        WakeConditionVariable(&allDone);
        ReleaseSRWLockExclusive(&lock);
    });
    EXPECT_EQ(turn, 1000 * Threads);
}

TEST(ConditionVariable, EndsItsWaitAtItsTimeByTheMonotonicClockWithTheLockHeld) {
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE condition = CONDITION_VARIABLE_INIT;
    AcquireSRWLockExclusive(&lock);
    WakeAllConditionVariable(&condition);  // nobody sleeps yet: it is not kept
    for (const DWORD milliseconds : {0u, 1u, 30u}) {
        const std::int64_t start = NowInNanoseconds();
        SetLastError(ERROR_SUCCESS);
        while (SleepConditionVariableSRW(&condition, &lock, milliseconds, 0)) continue;
        EXPECT_EQ(GetLastError(), ERROR_TIMEOUT);
        EXPECT_GE(NowInNanoseconds() - start, std::int64_t{milliseconds} * 1'000'000);
        EXPECT_FALSE(TryAcquireSRWLockExclusive(&lock));
    }
    ReleaseSRWLockExclusive(&lock);
}

TEST(Thread, HasAHandleThatOutlivesItAndShowsItsWrites) {
    int written = 0;
    const auto write = [](void* argument) noexcept -> DWORD {
        *static_cast<int*>(argument) = 7;
        return 0;
    };
    const HANDLE thread = CreateThread(nullptr, 0, write, &written, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    RunThreads([&](int) { EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0); });
    EXPECT_EQ(written, 7);
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    DWORD count = 0;
    EXPECT_FALSE(WriteFile(thread, "", 0, &count, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_TRUE(CloseHandle(thread));
}

TEST(Thread, GoesOnWhenItsHandleIsClosed) {
    std::atomic<int> step{0};
    const auto run = [](void* argument) noexcept -> DWORD {
        auto& shared = *static_cast<std::atomic<int>*>(argument);
        while (shared == 0) Sleep(0);
        shared = 2;
        return 0;
    };
    const HANDLE thread = CreateThread(nullptr, 0, run, &step, 0, nullptr);
    EXPECT_TRUE(CloseHandle(thread));
    step = 1;
    while (step != 2) Sleep(0);
}
