#include "Platform/Threads.h"

#include <pthread.h>

#include <memory>
#include <mutex>

#include "ErrnoFailure.h"
#include "Handles.h"

namespace Platform {

using namespace Posix;

namespace {

// A thread, for those who hold its handles. The thread itself doesn't use it.
struct Thread final : HandleOpaque {
    static constexpr Kind ItsKind = Kind::Thread;

    Thread() noexcept : HandleOpaque(ItsKind) {}
    ~Thread() override {
        if (started && !joined) pthread_detach(id);
    }

    pthread_t id{};
    bool started = false;

    std::mutex joinLock;  // guards joined: a thread may be joined once
    bool joined = false;
};

struct Routine {
    LPTHREAD_START_ROUTINE run;
    void* argument;
};

void* RunRoutine(void* argument) noexcept {
    const auto routine = *std::unique_ptr<Routine>{static_cast<Routine*>(argument)};
    routine.run(routine.argument);
    return nullptr;
}

}  // namespace

HANDLE CreateThread(void* security, std::size_t stackSize, LPTHREAD_START_ROUTINE routine, void* argument, DWORD flags,
                    DWORD* threadId) noexcept {
    if (security != nullptr || stackSize != 0 || routine == nullptr || flags != 0 || threadId != nullptr) {
        return Fail(ERROR_INVALID_PARAMETER, HANDLE{});
    }
    return OrOutOfMemory(HANDLE{}, [&] {
        auto thread = std::make_unique<Thread>();
        auto task = std::make_unique<Routine>(Routine{routine, argument});
        if (const int error = pthread_create(&thread->id, nullptr, RunRoutine, task.get()); error != 0) {
            return Fail(error == EAGAIN ? ERROR_MAX_THRDS_REACHED : Win32FromErrno(error), HANDLE{});
        }
        (void)task.release();  // the thread's own now
        thread->started = true;
        return HANDLE{thread.release()};
    });
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) noexcept {
    auto* const thread = ObjectOf<Thread>(handle);
    if (thread == nullptr) return Fail(ERROR_INVALID_HANDLE, WAIT_FAILED);
    if (milliseconds != INFINITE) return Fail(ERROR_INVALID_PARAMETER, WAIT_FAILED);
    const std::lock_guard guard{thread->joinLock};
    if (thread->joined) return WAIT_OBJECT_0;
    if (const int error = pthread_join(thread->id, nullptr); error != 0) {
        return Fail(Win32FromErrno(error), WAIT_FAILED);
    }
    thread->joined = true;
    return WAIT_OBJECT_0;
}

}  // namespace Platform
