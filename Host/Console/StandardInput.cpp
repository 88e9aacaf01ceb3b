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

TypedLines::TypedLines(std::function<void(const std::string&)> onTyped) : onTyped_(std::move(onTyped)) {
    if (onTyped_ && KeyMode::IsPossible()) keyMode_.emplace();
}

TypedLines::Event TypedLines::Wait(const StopSignal& stop, Clock::time_point until, std::string& line) {
    if (keyMode_) keyMode_->Renew();
    while (!TakeLine(line)) {
        std::array<pollfd, 2> sources{pollfd{stop.Descriptor(), POLLIN, 0},
                                      pollfd{ended_ ? -1 : STDIN_FILENO, POLLIN, 0}};
        const int wait = MillisecondsUntil(until);
        const int ready = poll(sources.data(), sources.size(), wait);
        if (sources[0].revents != 0) return Event::Stop;
        if (ready > 0) ReadMore();
        if (ready == 0 && wait < INT_MAX) return Event::Time;
    }
    return Event::Line;
}

bool TypedLines::TakeLine(std::string& line) {
    if (keyMode_) return editor_.TakeLine(line);
    const std::size_t end = pending_.find('\n');
    if (end == pending_.npos && !(ended_ && !pending_.empty())) return false;
    line = pending_.substr(0, end);
    pending_.erase(0, end == pending_.npos ? end : end + 1);
    return true;
}

void TypedLines::ReadMore() {
    std::array<char, 4096> block;
    const std::size_t count = ReadStandardInput(block);
    ended_ = count == 0;
    if (!keyMode_) {
        pending_.append(block.data(), count);
        return;
    }
    editor_.Feed({block.data(), count});
    ended_ = ended_ || editor_.HasEnded();
    onTyped_(editor_.Text());
}

}  // namespace Host
