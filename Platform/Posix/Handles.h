// The object that a handle refers to.
#pragma once

#include <atomic>
#include <cstdint>

#include "Platform/Process.h"

namespace Platform {

// It counts the handles that refer to it, so that a second one costs no system call.
struct HandleOpaque {
    enum class Kind { File, Thread };

    explicit HandleOpaque(Kind itsKind) noexcept : kind(itsKind) {}
    HandleOpaque(const HandleOpaque&) = delete;
    HandleOpaque& operator=(const HandleOpaque&) = delete;
    virtual ~HandleOpaque() = default;

    const Kind kind;
    std::atomic<std::uint32_t> references{1};
};

namespace Posix {

inline bool IsPseudoHandle(HANDLE handle) noexcept {
    return handle == GetCurrentProcess() || handle == GetCurrentThread();
}

// The object of the handle, which has the kind that the type names; null for any other handle.
template <class Object>
Object* ObjectOf(HANDLE handle) noexcept {
    if (handle == nullptr || IsPseudoHandle(handle) || handle->kind != Object::ItsKind) return nullptr;
    return static_cast<Object*>(handle);
}

}  // namespace Posix

}  // namespace Platform
