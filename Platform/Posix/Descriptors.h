// Reading and writing by file descriptor, in spite of signals and short counts.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace Platform::Posix {

// Makes a system call again as long as a signal interrupts it.
template <class Call>
auto RetryInterrupted(Call call) noexcept {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

// Writes with one system call where the file takes all at once. Gives the bytes written; if they are too few, errno
// tells why, and 0 there means that the file just took no more.
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

// As WriteFully, where a reader may have gone or a size limit may be reached: that is a failure of the call like any
// other, and its signal, which would end the process, doesn't reach it.
std::size_t WriteWithoutSignals(int descriptor, const void* data, std::size_t size) noexcept;

}  // namespace Platform::Posix
