// A thread of the platform, owned.
#pragma once

#include <utility>

#include "Harbor/ResultCodes.h"
#include "Platform/Threads.h"

namespace Harbor {

// Not safe for use by several threads at a time.
class Thread {
public:
    Thread() noexcept = default;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    ~Thread() { Join(); }

    // Runs a method of the object on a new thread: `thread.Start<&Server::Serve>(server)`. The object must live as long
    // as the thread. There must be no thread yet. Returns why the system refuses: 0x800700A4 (no more threads),
    // E_OUTOFMEMORY, or its own code.
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

    // Waits for the end of the thread, if there is one. Not on that thread.
    void Join() noexcept;
    // Lets the thread go on by itself.
    void Detach() noexcept;

private:
    [[nodiscard]] HRESULT Start(Platform::LPTHREAD_START_ROUTINE routine, void* argument) noexcept;

    Platform::HANDLE handle_ = nullptr;
};

}  // namespace Harbor
