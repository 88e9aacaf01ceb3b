// Owns a thread of the platform.
#pragma once

#include <utility>

#include "Harbor/ResultCodes.h"
#include "Platform/Threads.h"

namespace Harbor {

// Only one thread may use an object at a time. The destructor calls Join.
class Thread {
public:
    Thread() noexcept = default;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    ~Thread() { Join(); }

    // Runs a method of the object on a new thread: `thread.Start<&Server::Serve>(server)`. The object must stay alive
    // until the thread has ended. Must not be called while this owns a thread. Returns S_OK, or if the system refuses
    // the thread: 0x800700A4 (no more threads), E_OUTOFMEMORY, or the system's own code.
    template <auto Method, class Object>
    [[nodiscard]] HRESULT Start(Object* object) noexcept {
        static_assert(noexcept((object->*Method)()));
        return Start(
            [](void* self) noexcept -> Platform::DWORD {
                (static_cast<Object*>(self)->*Method)();
                return 0;
            },
            object);
    }

    // Waits until the thread has ended, if this owns one. Must not be called on that thread.
    void Join() noexcept;
    // Gives up the thread, which continues to run.
    void Detach() noexcept;

private:
    [[nodiscard]] HRESULT Start(Platform::LPTHREAD_START_ROUTINE routine, void* argument) noexcept;

    Platform::HANDLE handle_ = nullptr;
};

}  // namespace Harbor
