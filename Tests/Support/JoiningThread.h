// A thread for tests. It is based on the platform layer, since not every compiler's library for Windows has threads.
#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

#include "Platform/Files.h"
#include "Platform/Threads.h"

// The destructor waits until the body has returned.
class JoiningThread {
public:
    explicit JoiningThread(std::function<void()> body)
        : body_(std::make_unique<std::function<void()>>(std::move(body))),
          handle_(Platform::CreateThread(nullptr, 0, &Run, body_.get(), 0, nullptr)) {
        if (handle_ == nullptr) throw std::runtime_error("The system refused a thread");
    }
    JoiningThread(JoiningThread&& other) noexcept
        : body_(std::move(other.body_)), handle_(std::exchange(other.handle_, nullptr)) {}
    JoiningThread& operator=(JoiningThread&&) = delete;
    ~JoiningThread() { Join(); }

    void Join() {
        if (handle_ == nullptr) return;
        Platform::WaitForSingleObject(handle_, Platform::INFINITE);
        Platform::CloseHandle(std::exchange(handle_, nullptr));
    }

private:
    static Platform::DWORD Run(void* body) noexcept {
        (*static_cast<std::function<void()>*>(body))();
        return 0;
    }

    std::unique_ptr<std::function<void()>> body_;  // at an address that a move does not change
    Platform::HANDLE handle_;
};
