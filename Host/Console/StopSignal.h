// The wish that the program ends: SIGINT, SIGTERM, or its own.
#pragma once

#include <chrono>

namespace Host {

// While it lives the two signals are a wish instead of an end. The first one brings their usual meaning back, so that a
// second one ends a program that hangs. There is at most one at a time.
class StopSignal {
public:
    StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;
    ~StopSignal();

    // Any thread.
    void Request() const noexcept;

    // Waits for the wish, not longer than that, and tells whether it is there.
    [[nodiscard]] bool WaitFor(std::chrono::milliseconds time) const noexcept;

    // Readable from the wish on.
    int Descriptor() const noexcept { return readEnd_; }

private:
    int readEnd_ = -1;
};

// Writing to a pipe that nobody reads is a failed write from now on, and not the end of the program.
void IgnoreBrokenPipes() noexcept;

}  // namespace Host
