// The functions of the platform layer that a run controls. They win over the library's when the program is linked.
//
// The words of a lock hold who has it: the number of readers or Writer, and the number of the writing thread plus one.
// Both are 0 for a free lock, as in the layer, so that a lock may be used in a run and outside.
#include "Interleaving/Scheduler.h"
#include "Platform/Errors.h"
#include "Platform/Files.h"
#include "Platform/Process.h"
#include "Platform/Threads.h"
#include "Platform/Time.h"
#include "Support/NextDefinition.h"

// What the function does outside a run.
#define OUTSIDE_A_RUN(name, ...)                                 \
    if (Scheduler::Self() == nullptr) {                          \
        static const auto next = NextDefinitionOf(&name, #name); \
        return next(__VA_ARGS__);                                \
    }
#define STEP(what, object)                        \
    Step {                                        \
        what, object, __builtin_return_address(0) \
    }

namespace Platform {

using namespace Interleaving;

namespace {

constexpr std::uint32_t Writer = 0xFFFFFFFF;

// In 1601's ticks of 100 ns, some moment of the year 2024.
constexpr std::int64_t WallClockAtStart = 133'540'000'000'000'000;
constexpr std::int64_t NanosecondsPerTick = 100;

bool IsFree(const SRWLOCK& lock) {
    return lock.words[0] == 0;
}

std::uint32_t MarkOf(const Agent& agent) {
    return agent.number + 1;
}

void Occupy(SRWLOCK& lock, Agent& agent) {
    lock = {{Writer, MarkOf(agent)}};
    ++agent.locksHeld;
}

void WaitAndOccupy(SRWLOCK& lock, const Step& step) {
    Agent& self = *Scheduler::Self();
    while (!IsFree(lock)) {
        if (lock.words[1] == MarkOf(self)) Scheduler::Instance().Fail("a thread waits for a lock that it holds");
        Scheduler::Instance().Wait(step, &lock, Never);
    }
    Occupy(lock, self);
}

void Free(SRWLOCK& lock) {
    Agent& self = *Scheduler::Self();
    if (lock.words[0] != Writer || lock.words[1] != MarkOf(self)) {
        Scheduler::Instance().Fail("a lock is released that the thread doesn't hold");
    }
    lock = SRWLOCK_INIT;
    --self.locksHeld;
    Scheduler::Instance().SignalAll(&lock);
}

Nanoseconds DeadlineIn(DWORD milliseconds) {
    return milliseconds == INFINITE
               ? Never
               : Scheduler::Instance().Now() + std::int64_t{milliseconds} * NanosecondsPerMillisecond;
}

}  // namespace

void AcquireSRWLockExclusive(SRWLOCK* lock) noexcept {
    OUTSIDE_A_RUN(AcquireSRWLockExclusive, lock)
    Scheduler::Instance().Point(STEP("acquires", lock));
    WaitAndOccupy(*lock, STEP("waits for", lock));
}

BOOL TryAcquireSRWLockExclusive(SRWLOCK* lock) noexcept {
    OUTSIDE_A_RUN(TryAcquireSRWLockExclusive, lock)
    Scheduler::Instance().Point(STEP("tries", lock));
    if (!IsFree(*lock)) return FALSE;
    Occupy(*lock, *Scheduler::Self());
    return TRUE;
}

void ReleaseSRWLockExclusive(SRWLOCK* lock) noexcept {
    OUTSIDE_A_RUN(ReleaseSRWLockExclusive, lock)
    Free(*lock);
    Scheduler::Instance().Point(STEP("released", lock));
}

void AcquireSRWLockShared(SRWLOCK* lock) noexcept {
    OUTSIDE_A_RUN(AcquireSRWLockShared, lock)
    Scheduler::Instance().Point(STEP("acquires, shared,", lock));
    while (lock->words[0] == Writer) Scheduler::Instance().Wait(STEP("waits, shared, for", lock), lock, Never);
    ++lock->words[0];
    ++Scheduler::Self()->locksHeld;
}

void ReleaseSRWLockShared(SRWLOCK* lock) noexcept {
    OUTSIDE_A_RUN(ReleaseSRWLockShared, lock)
    if (IsFree(*lock) || lock->words[0] == Writer) Scheduler::Instance().Fail("a lock is released that has no reader");
    --Scheduler::Self()->locksHeld;
    if (--lock->words[0] == 0) Scheduler::Instance().SignalAll(lock);
    Scheduler::Instance().Point(STEP("released, shared,", lock));
}

BOOL SleepConditionVariableSRW(CONDITION_VARIABLE* condition, SRWLOCK* lock, DWORD milliseconds, DWORD flags) noexcept {
    OUTSIDE_A_RUN(SleepConditionVariableSRW, condition, lock, milliseconds, flags)
    Free(*lock);
    bool woken = false;
    if (milliseconds == 0) {
        Scheduler::Instance().GiveWay(STEP("sleeps no time with", condition));
    } else {
        woken = Scheduler::Instance().Wait(STEP("sleeps with", condition), condition, DeadlineIn(milliseconds));
    }
    WaitAndOccupy(*lock, STEP("waits for", lock));
    if (!woken) SetLastError(ERROR_TIMEOUT);
    return woken ? TRUE : FALSE;
}

void WakeConditionVariable(CONDITION_VARIABLE* condition) noexcept {
    OUTSIDE_A_RUN(WakeConditionVariable, condition)
    Scheduler::Instance().Point(STEP("wakes one of", condition));
    Scheduler::Instance().SignalOne(condition);
}

void WakeAllConditionVariable(CONDITION_VARIABLE* condition) noexcept {
    OUTSIDE_A_RUN(WakeAllConditionVariable, condition)
    Scheduler::Instance().Point(STEP("wakes all of", condition));
    Scheduler::Instance().SignalAll(condition);
}

HANDLE CreateThread(void* security, std::size_t stackSize, LPTHREAD_START_ROUTINE routine, void* argument, DWORD flags,
                    DWORD* threadId) noexcept {
    OUTSIDE_A_RUN(CreateThread, security, stackSize, routine, argument, flags, threadId)
    Agent& agent = Scheduler::Instance().StartThread(STEP("creates a thread", nullptr), [=] { routine(argument); });
    return reinterpret_cast<HANDLE>(&agent);
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) noexcept {
    OUTSIDE_A_RUN(WaitForSingleObject, handle, milliseconds)
    Agent* const agent = Scheduler::Instance().AgentOf(handle);
    if (agent == nullptr || !agent->handleOpen) Scheduler::Instance().Fail("a wait for what is no thread's handle");
    Scheduler::Instance().Join(STEP("joins", handle), *agent);
    return WAIT_OBJECT_0;
}

BOOL CloseHandle(HANDLE handle) noexcept {
    Agent* const agent = Scheduler::Self() != nullptr ? Scheduler::Instance().AgentOf(handle) : nullptr;
    if (agent == nullptr) {
        static const auto next = NextDefinitionOf(&CloseHandle, __func__);
        return next(handle);
    }
    Scheduler::Instance().CloseHandle(*agent);
    return TRUE;
}

void Sleep(DWORD milliseconds) noexcept {
    OUTSIDE_A_RUN(Sleep, milliseconds)
    if (milliseconds == 0) {
        Scheduler::Instance().GiveWay(STEP("sleeps no time", nullptr));
    } else {
        Scheduler::Instance().Wait(STEP("sleeps", nullptr), nullptr, DeadlineIn(milliseconds));
    }
}

// By this clock memories age that outlive a run. They would make the steps of a run depend on the runs before it.
DWORD GetTickCount() noexcept {
    return 1'000'000;
}

BOOL QueryPerformanceCounter(std::int64_t* counter) noexcept {
    OUTSIDE_A_RUN(QueryPerformanceCounter, counter)
    *counter = Scheduler::Instance().Now();
    return TRUE;
}

BOOL QueryPerformanceFrequency(std::int64_t* frequency) noexcept {
    OUTSIDE_A_RUN(QueryPerformanceFrequency, frequency)
    *frequency = 1000 * NanosecondsPerMillisecond;
    return TRUE;
}

void GetSystemTimeAsFileTime(FILETIME* time) noexcept {
    OUTSIDE_A_RUN(GetSystemTimeAsFileTime, time)
    const std::int64_t ticks = WallClockAtStart + Scheduler::Instance().Now() / NanosecondsPerTick;
    *time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

void GetSystemTimePreciseAsFileTime(FILETIME* time) noexcept {
    OUTSIDE_A_RUN(GetSystemTimePreciseAsFileTime, time)
    GetSystemTimeAsFileTime(time);
}

}  // namespace Platform
