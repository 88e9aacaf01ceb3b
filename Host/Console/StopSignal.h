// A request to stop: by SIGINT, SIGTERM, SIGHUP, or the program itself.
#pragma once

#include <chrono>

namespace Host {

// While it exists, these signals request a stop instead of ending the process. After the first signal each of them has
// its default action again, so that a second one ends a program that hangs. There is at most one object at a time.
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

    // Becomes readable when a stop is requested, and stays so.
    int Descriptor() const noexcept { return readEnd_; }

private:
    int readEnd_ = -1;
};

// From now on, writing to a pipe that has no reader fails instead of ending the process.
void IgnoreBrokenPipes() noexcept;

}  // namespace Host
