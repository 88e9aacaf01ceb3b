#include "Host/Console/StandardInput.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include "Host/Console/LineEditor.h"

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

class TypedLines::Input {
public:
    // In key mode there is `onTyped`.
    explicit Input(std::function<void(const std::string&)> onTyped) : onTyped_(std::move(onTyped)) {}

    Event Wait(const StopSignal& stop, Clock::time_point until, std::string& line);

private:
    bool TakeLine(std::string& line);
    void ReadMore();

    const std::function<void(const std::string&)> onTyped_;
    LineEditor editor_;    // used in key mode
    std::string pending_;  // used without it
    bool ended_ = false;
};

TypedLines::TypedLines(std::function<void(const std::string&)> onTyped) {
    if (onTyped && KeyMode::IsPossible()) keyMode_.emplace();
    input_ = std::make_shared<Input>(keyMode_ ? std::move(onTyped) : nullptr);
}
TypedLines::~TypedLines() = default;

TypedLines::Event TypedLines::Wait(const StopSignal& stop, Clock::time_point until, std::string& line) {
    if (keyMode_) keyMode_->Renew();
    return input_->Wait(stop, until, line);
}

TypedLines::Event TypedLines::Input::Wait(const StopSignal& stop, Clock::time_point until, std::string& line) {
    while (!TakeLine(line)) {
        std::array<pollfd, 2> sources{pollfd{static_cast<int>(stop.WaitObject()), POLLIN, 0},
                                      pollfd{ended_ ? -1 : STDIN_FILENO, POLLIN, 0}};
        const int wait = MillisecondsUntil(until);
        const int ready = poll(sources.data(), sources.size(), wait);
        if (sources[0].revents != 0) return Event::Stop;
        if (ready > 0) ReadMore();
        if (ready == 0 && wait < INT_MAX) return Event::Time;
    }
    return Event::Line;
}

bool TypedLines::Input::TakeLine(std::string& line) {
    if (onTyped_) return editor_.TakeLine(line);
    const std::size_t end = pending_.find('\n');
    if (end == pending_.npos && !(ended_ && !pending_.empty())) return false;
    line = pending_.substr(0, end);
    pending_.erase(0, end == pending_.npos ? end : end + 1);
    return true;
}

void TypedLines::Input::ReadMore() {
    std::array<char, 4096> block;
    const std::size_t count = ReadStandardInput(block);
    ended_ = count == 0;
    if (!onTyped_) {
        pending_.append(block.data(), count);
        return;
    }
    editor_.Feed({block.data(), count});
    ended_ = ended_ || editor_.HasEnded();
    onTyped_(editor_.Text());
}

}  // namespace Host
