#include "Host/Console/StandardInput.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

namespace Host {
namespace {

using Clock = std::chrono::steady_clock;

// Rounded up, so that the wait does not end early.
int MillisecondsUntil(Clock::time_point until) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, INT_MAX));
}

}  // namespace

std::size_t ReadStandardInput(std::span<char> buffer) {
    for (;;) {
        const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) return 0;
    }
}

class InputBlocks::Source {
public:
    Event Wait(const StopSignal& stop, Clock::time_point until, std::string& block) {
        for (;;) {
            std::array<pollfd, 2> sources{pollfd{static_cast<int>(stop.WaitObject()), POLLIN, 0},
                                          pollfd{ended_ ? -1 : STDIN_FILENO, POLLIN, 0}};
            const int wait = MillisecondsUntil(until);
            const int ready = poll(sources.data(), sources.size(), wait);
            if (sources[0].revents != 0) return Event::Stop;
            if (ready > 0) {
                std::array<char, 4096> buffer;
                block.assign(buffer.data(), ReadStandardInput(buffer));
                ended_ = block.empty();
                return Event::Block;
            }
            if (ready == 0 && wait < INT_MAX) return Event::Time;
        }
    }

private:
    bool ended_ = false;
};

InputBlocks::InputBlocks() : source_(std::make_shared<Source>()) {}
InputBlocks::~InputBlocks() = default;

InputBlocks::Event InputBlocks::Wait(const StopSignal& stop, Clock::time_point until, std::string& block) {
    return source_->Wait(stop, until, block);
}

}  // namespace Host
