#include "Host/Console/TypedLines.h"

namespace Host {

TypedLines::TypedLines(std::function<void(const std::string&)> onTyped) : onTyped_(std::move(onTyped)) {
    if (onTyped_ && KeyMode::IsPossible()) keyMode_.emplace();
}

TypedLines::Event TypedLines::Wait(const StopSignal& stop, std::chrono::steady_clock::time_point until,
                                   std::string& line) {
    if (keyMode_) keyMode_->Renew();
    while (!TakeLine(line)) {
        std::string block;
        switch (input_.Wait(stop, until, block)) {
            case InputBlocks::Event::Stop:
                return Event::Stop;
            case InputBlocks::Event::Time:
                return Event::Time;
            case InputBlocks::Event::Block:
                Add(block);
        }
    }
    return Event::Line;
}

bool TypedLines::TakeLine(std::string& line) {
    if (keyMode_) return editor_.TakeLine(line);
    const std::size_t end = pending_.find('\n');
    if (end == pending_.npos && !(ended_ && !pending_.empty())) return false;
    line = pending_.substr(0, end);
    if (line.ends_with('\r')) line.pop_back();
    pending_.erase(0, end == pending_.npos ? end : end + 1);
    return true;
}

void TypedLines::Add(std::string_view block) {
    if (ended_) return;
    ended_ = block.empty();
    if (!keyMode_) {
        pending_.append(block);
        return;
    }
    editor_.Feed(block);
    ended_ = ended_ || editor_.HasEnded();
    onTyped_(editor_.Text());
}

}  // namespace Host
