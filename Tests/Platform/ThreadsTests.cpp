#include "Platform/Threads.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <time.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <thread>
#include <vector>

#include "Platform/Errors.h"
#include "Platform/Files.h"
#include "Platform/Process.h"
#include "Platform/Time.h"

using namespace Platform;

namespace {

thread_local int threadRefusal = 0;  // what the system answers to the next threads of this thread

constexpr int Threads = 4;
constexpr int Rounds = 20000;

void RunThreads(auto body) {
    std::vector<std::jthread> threads;
    for (int i = 0; i < Threads; ++i) threads.emplace_back(body, i);
}

std::int64_t Now() {
    std::int64_t now = 0;
    QueryPerformanceCounter(&now);
    return now;
}

// Ends the process if a wake is lost.
constexpr DWORD LongTime = 60'000;

}  // namespace

extern "C" PLATFORM_EXPORT int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                              void* (*start)(void*), void* argument) {
    static const auto create = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return threadRefusal != 0 ? threadRefusal : create(thread, attributes, start, argument);
}

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
    std::thread([&] {
        AcquireSRWLockShared(&lock);
        EXPECT_FALSE(TryAcquireSRWLockExclusive(&lock));
        ReleaseSRWLockShared(&lock);
    }).join();
    std::thread writer([&] {
        comes = true;
        comes.notify_one();
        AcquireSRWLockExclusive(&lock);
        EXPECT_TRUE(left);
        ReleaseSRWLockExclusive(&lock);
    });
    comes.wait(false);
    left = true;
    ReleaseSRWLockShared(&lock);
    writer.join();
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
        const std::int64_t start = Now();
        SetLastError(ERROR_SUCCESS);
        while (SleepConditionVariableSRW(&condition, &lock, milliseconds, 0)) continue;
        EXPECT_EQ(GetLastError(), ERROR_TIMEOUT);
        EXPECT_GE(Now() - start, std::int64_t{milliseconds} * 1'000'000);
        EXPECT_FALSE(TryAcquireSRWLockExclusive(&lock));
    }
    EXPECT_FALSE(SleepConditionVariableSRW(&condition, &lock, 0, 1));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
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
        shared.wait(0);
        shared = 2;
        shared.notify_all();
        return 0;
    };
    const HANDLE thread = CreateThread(nullptr, 0, run, &step, 0, nullptr);
    EXPECT_TRUE(CloseHandle(thread));
    step = 1;
    step.notify_all();
    step.wait(1);
    EXPECT_EQ(step, 2);
}

TEST(Thread, TellsWhyThereIsNone) {
    const auto run = [](void*) noexcept -> DWORD { return 0; };
    for (const auto& [refusal, code] : {std::pair{EAGAIN, ERROR_MAX_THRDS_REACHED},
                                        {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
                                        {EPERM, ERROR_ACCESS_DENIED}}) {
        threadRefusal = refusal;
        EXPECT_EQ(CreateThread(nullptr, 0, run, nullptr, 0, nullptr), nullptr);
        EXPECT_EQ(GetLastError(), code);
    }
    threadRefusal = 0;
    EXPECT_EQ(CreateThread(nullptr, 0, run, nullptr, 4, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    for (const HANDLE none : {HANDLE{}, GetCurrentProcess()}) {
        EXPECT_EQ(WaitForSingleObject(none, INFINITE), WAIT_FAILED);
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    }
}
