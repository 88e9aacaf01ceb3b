// Reads and writes file descriptors in spite of interrupting signals and short counts.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace Platform::Posix {

// Repeats a system call while a signal interrupts it.
template <class Call>
auto RetryInterrupted(Call call) noexcept {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

// Writes all bytes, with one system call if the file accepts them at once. Returns the number of bytes written. If that
// is less than `size`, errno is the reason; errno 0 means that the file accepted no more bytes without a failure.
inline std::size_t WriteFully(int descriptor, const void* data, std::size_t size) noexcept {
    const auto* const bytes = static_cast<const char*>(data);
    std::size_t written = 0;
    while (written < size) {
        errno = 0;
        const ssize_t count = RetryInterrupted([&] { return write(descriptor, bytes + written, size - written); });
        if (count <= 0) break;
        written += static_cast<std::size_t>(count);
    }
    return written;
}

// Like WriteFully, for files whose reader may be closed or whose size limit may be reached. That is an ordinary failure
// of the call: its signal, which would end the process, is suppressed.
std::size_t WriteWithoutSignals(int descriptor, const void* data, std::size_t size) noexcept;

}  // namespace Platform::Posix
