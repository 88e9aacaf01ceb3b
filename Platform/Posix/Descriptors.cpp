#include "Descriptors.h"

#include <signal.h>

#include <ctime>

namespace Platform::Posix {

std::size_t WriteWithoutSignals(int descriptor, const void* data, std::size_t size) noexcept {
    sigset_t signals, before;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    sigaddset(&signals, SIGXFSZ);
    if (const int error = pthread_sigmask(SIG_BLOCK, &signals, &before); error != 0) {
        errno = error;
        return 0;
    }
    const std::size_t written = WriteFully(descriptor, data, size);
    const int error = errno;
    if (written < size && (error == EPIPE || error == EFBIG)) {
        // The signal is pending for this thread, and is taken before one that is pending for the process.
        const timespec atOnce{};
        RetryInterrupted([&] { return sigtimedwait(&signals, nullptr, &atOnce); });
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return written;
}

}  // namespace Platform::Posix
