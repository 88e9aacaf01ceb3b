// A request to stop: by SIGINT, SIGTERM or SIGHUP, on Windows by Ctrl-C, Ctrl-Break, the end of the session or the
// closing of the window, or by the program itself.
#pragma once

#include <chrono>
#include <cstdint>

namespace Host {

// While it exists, these events request a stop instead of ending the process. After the first one each of them has its
// default action again, so that a second one ends a program that hangs. There is at most one object at a time.
class StopSignal {
public:
    StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;
    ~StopSignal();

    // May be called on any thread.
    void Request() const noexcept;

    // Waits until a stop is requested or the time is over, and returns whether a stop is requested.
    [[nodiscard]] bool WaitFor(std::chrono::milliseconds time) const noexcept;

    // What the system's functions can wait for, together with other events: a descriptor that becomes readable when a
    // stop is requested and stays so; on Windows the handle of an event.
    std::intptr_t WaitObject() const noexcept { return waitObject_; }

private:
    std::intptr_t waitObject_ = -1;
};

// From now on, writing to a pipe that has no reader fails instead of ending the process, as it always does on Windows.
void IgnoreBrokenPipes() noexcept;

}  // namespace Host
