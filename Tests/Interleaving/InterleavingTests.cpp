// Small programs with a known fault each, which must be found, and sound ones, which must not be blamed.
#include "Interleaving/Interleaving.h"

#include <gmock/gmock.h>

#include <vector>

#include "Platform/Files.h"
#include "Platform/Process.h"
#include "Platform/Threads.h"
#include "Platform/Time.h"

namespace {

using namespace Platform;
using Interleaving::Explore;
using Interleaving::Point;
using Interleaving::Require;
using Interleaving::RunThread;
using testing::HasSubstr;

constexpr std::uint64_t Seeds = 2000;

struct Guard {
    explicit Guard(SRWLOCK& itsLock) : lock(itsLock) { AcquireSRWLockExclusive(&lock); }
    ~Guard() { ReleaseSRWLockExclusive(&lock); }
    SRWLOCK& lock;
};

std::int64_t Milliseconds() {
    std::int64_t counter = 0, frequency = 1;
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    return counter * 1000 / frequency;
}

struct Fault {
    const char* name;
    std::function<void()> scenario;
    const char* report;
};

class FaultsAreFound : public testing::TestWithParam<Fault> {};

// One addition is lost only if the other thread comes between the read and the write.
void LoseAnAddition() {
    int sum = 0;
    {
        const auto add = [&] {
            const int seen = sum;
            Point("adds");
            sum = seen + 1;
        };
        const RunThread one(add), two(add);
    }
    Require(sum == 2, "no addition is lost");
}

void TakeTwoLocksInBothOrders() {
    SRWLOCK one = SRWLOCK_INIT, two = SRWLOCK_INIT;
    const auto take = [](SRWLOCK& first, SRWLOCK& second) {
        const Guard outer(first);
        const Guard inner(second);
    };
    const RunThread forward([&] { take(one, two); }), backward([&] { take(two, one); });
}

// The flag is set and signalled without the lock: between the check and the wait.
void LoseAWake() {
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE told = CONDITION_VARIABLE_INIT;
    bool flag = false;
    const RunThread teller([&] {
        flag = true;
        WakeAllConditionVariable(&told);
    });
    const Guard guard(lock);
    while (!flag) {
        Point("saw no flag");
        SleepConditionVariableSRW(&told, &lock, INFINITE, 0);
    }
}

// Needs three switches in order, and each thread has other things to do before.
void MissOneOrderOfMany() {
    int step = 0;
    {
        const auto work = [&](int mine, int other) {
            for (int i = 0; i < 5; ++i) Point("works");
            if (step == mine) ++step;
            Point("goes on");
            if (step == other) ++step;
        };
        const RunThread one([&] { work(0, 2); }), two([&] { work(1, 3); });
    }
    Require(step != 4, "the steps never come in this order");
}

void NeverGetAnywhere() {
    for (;;) Sleep(0);
}

void StarveTheOther() {
    SRWLOCK lock = SRWLOCK_INIT;
    bool stop = false;
    int rounds = 0;
    const RunThread busy([&] {
        for (bool stopped = false; !stopped;) {
            const Guard guard(lock);
            stopped = stop;
            Require(++rounds < 8, "the other thread gets the lock within eight rounds");
        }
    });
    const Guard guard(lock);
    stop = true;
}

void EndWithALock() {
    SRWLOCK lock = SRWLOCK_INIT;
    AcquireSRWLockExclusive(&lock);
}

void TakeALockTwice() {
    SRWLOCK lock = SRWLOCK_INIT;
    const Guard once(lock), twice(lock);
}

void FreeALockOfAnother() {
    SRWLOCK lock = SRWLOCK_INIT;
    AcquireSRWLockExclusive(&lock);
    const RunThread other([&] { ReleaseSRWLockExclusive(&lock); });
}

void KeepAHandle() {
    CreateThread(
        nullptr, 0, [](void*) noexcept -> DWORD { return 0; }, nullptr, 0, nullptr);
}

void Throw() {
    throw std::runtime_error("thrown");
}

}  // namespace

TEST_P(FaultsAreFound, AndComeAgainWithTheirSeed) {
    const auto failure = Explore(Seeds, GetParam().scenario);
    ASSERT_TRUE(failure);
    EXPECT_THAT(failure->what, HasSubstr(GetParam().report));
    const auto again = Interleaving::Run(failure->seed, GetParam().scenario);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->trace, failure->trace);
    RecordProperty("seed", std::to_string(failure->seed));
}

INSTANTIATE_TEST_SUITE_P(Of, FaultsAreFound,
                         testing::Values(Fault{"LostAddition", LoseAnAddition, "broken promise: no addition is lost"},
                                         Fault{"TwoLocks", TakeTwoLocksInBothOrders, "deadlock"},
                                         Fault{"LostWake", LoseAWake, "deadlock"},
                                         Fault{"Order", MissOneOrderOfMany, "in this order"},
                                         Fault{"Starvation", StarveTheOther, "within eight rounds"},
                                         Fault{"Livelock", NeverGetAnywhere, "more steps than the limit"},
                                         Fault{"KeptLock", EndWithALock, "a thread ends with a lock held"},
                                         Fault{"LockTakenTwice", TakeALockTwice, "a lock that it holds"},
                                         Fault{"LockOfAnother", FreeALockOfAnother, "that the thread doesn't hold"},
                                         Fault{"KeptHandle", KeepAHandle, "never closed"},
                                         Fault{"Exception", Throw, "an exception leaves a thread: thrown"}),
                         [](const auto& fault) { return fault.param.name; });

TEST(Interleavings, OfASoundProgramAreAllAllowed) {
    constexpr int items = 4;
    const auto failure = Explore(Seeds, [] {
        SRWLOCK lock = SRWLOCK_INIT;
        CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
        std::vector<int> box, taken;
        const auto waitUntil = [&](auto predicate) {
            while (!predicate()) SleepConditionVariableSRW(&changed, &lock, INFINITE, 0);
        };
        {
            const RunThread giver([&] {
                for (int item = 0; item < items; ++item) {
                    const Guard guard(lock);
                    waitUntil([&] { return box.empty(); });
                    box.push_back(item);
                    WakeAllConditionVariable(&changed);
                }
            });
            const RunThread taker([&] {
                for (int count = 0; count < items; ++count) {
                    const Guard guard(lock);
                    waitUntil([&] { return !box.empty(); });
                    taken.push_back(box.back());
                    box.pop_back();
                    WakeConditionVariable(&changed);
                }
            });
            const RunThread reader([&] {
                AcquireSRWLockShared(&lock);
                const std::size_t seen = box.size();
                Point("reads");
                Require(box.size() == seen, "no writer comes in beside a reader");
                ReleaseSRWLockShared(&lock);
            });
        }
        Require(taken == std::vector{0, 1, 2, 3}, "each item is taken once, in order");
    });
    EXPECT_FALSE(failure) << *failure;
}

TEST(Time, StandsStillUnlessAllWaitAndThenGoesToTheNearestDeadline) {
    const auto failure = Explore(Seeds, [] {
        std::vector<std::int64_t> woken;
        {
            const auto sleep = [&](DWORD milliseconds) {
                Sleep(milliseconds);
                woken.push_back(Milliseconds());
            };
            const RunThread day([&] { sleep(86'400'000); }), hour([&] { sleep(3'600'000); });
            const RunThread waiting([&] {
                SRWLOCK lock = SRWLOCK_INIT;
                CONDITION_VARIABLE never = CONDITION_VARIABLE_INIT;
                const Guard guard(lock);
                Require(!SleepConditionVariableSRW(&never, &lock, 5, 0), "the wait ends by its time");
                woken.push_back(Milliseconds());
            });
        }
        Require(woken == std::vector<std::int64_t>{5, 3'600'000, 86'400'000}, "each wakes at its moment");
    });
    EXPECT_FALSE(failure) << *failure;
}
