#include "Platform/Threads.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <cerrno>
#include <utility>

#include "Platform/Errors.h"
#include "Platform/Process.h"

using namespace Platform;

static thread_local int threadRefusal = 0;  // what the system answers to the next threads of this thread

extern "C" PLATFORM_EXPORT int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                              void* (*start)(void*), void* argument) {
    static const auto create = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return threadRefusal != 0 ? threadRefusal : create(thread, attributes, start, argument);
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

TEST(ConditionVariable, RefusesFlags) {
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE condition = CONDITION_VARIABLE_INIT;
    AcquireSRWLockExclusive(&lock);
    EXPECT_FALSE(SleepConditionVariableSRW(&condition, &lock, 0, 1));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    ReleaseSRWLockExclusive(&lock);
}
