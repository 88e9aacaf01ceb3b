#include "Host/Console/StopSignal.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <system_error>

namespace Host {
namespace {

constexpr std::array StoppingSignals{SIGINT, SIGTERM, SIGHUP};

// Global, since a signal handler gets no argument of the program's. The pipe is never emptied: a request is not
// withdrawn.
std::atomic<int> WriteEnd{-1};
static_assert(std::atomic<int>::is_always_lock_free);

void WriteRequest() noexcept {
    const int error = errno;
    // A full pipe holds a request already.
    [[maybe_unused]] const auto written = write(WriteEnd.load(), "", 1);
    errno = error;
}

void OnSignal(int) noexcept {
    WriteRequest();
}

void Handle(int signal, void (*handler)(int), int flags) noexcept {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(signal, &action, nullptr);
}

}  // namespace

StopSignal::StopSignal() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "Cannot create a pipe for signals");
    waitObject_ = ends[0];
    WriteEnd = ends[1];
    for (const int signal : StoppingSignals) {
        Handle(signal, &OnSignal, static_cast<int>(SA_RESTART | static_cast<unsigned>(SA_RESETHAND)));
    }
}

StopSignal::~StopSignal() {
    for (const int signal : StoppingSignals) Handle(signal, SIG_DFL, 0);
    close(WriteEnd.exchange(-1));
    close(static_cast<int>(waitObject_));
}

void StopSignal::Request() const noexcept {
    WriteRequest();
}

bool StopSignal::WaitFor(std::chrono::milliseconds time) const noexcept {
    pollfd request{static_cast<int>(waitObject_), POLLIN, 0};
    const auto wait = std::min<std::chrono::milliseconds::rep>(time.count(), INT_MAX);
    return poll(&request, 1, static_cast<int>(wait)) > 0;
}

void IgnoreBrokenPipes() noexcept {
    Handle(SIGPIPE, SIG_IGN, 0);
}

}  // namespace Host
