#include "Host/Log/LogParser.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Host {
namespace {

constexpr std::size_t UnitSize = sizeof(char16_t);
// For files that are no logs and may have no line ends at all. Even, so that no character is cut.
constexpr std::size_t LongestLineBytes = std::size_t{64} << 20;
constexpr char16_t ByteOrderMark = u'\uFEFF';

// Returns the position after the line's end, or npos. Characters of a line begin at even bytes. A line end at an odd
// byte shows that a character was cut off. No text can look like that: it would need U+0A00, which is not assigned.
std::size_t FindLineEnd(std::string_view line, std::size_t from) {
    for (std::size_t at = line.find('\n', from); at != line.npos; at = line.find('\n', at + 1)) {
        if (at + 1 == line.size()) return line.npos;
        if (line[at + 1] != '\0') continue;
        const bool isEven = at % UnitSize == 0;
        if (isEven || (at >= UnitSize && line[at - 2] == '\r' && line[at - 1] == '\0')) return at + UnitSize;
    }
    return line.npos;
}

std::u16string Decode(std::string_view bytes) {
    std::u16string text(bytes.size() / UnitSize, u'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * UnitSize);
    return text;
}

std::u16string_view WithoutLineEnd(std::u16string_view text) {
    if (text.ends_with(u'\n')) text.remove_suffix(1);
    if (text.ends_with(u'\r')) text.remove_suffix(1);
    return text;
}

bool IsSurrogate(char16_t c) {
    return (c & 0xF800) == 0xD800;
}
bool IsPair(char16_t first, char16_t second) {
    return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
}

std::size_t FindUnpairedSurrogate(std::u16string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!IsSurrogate(text[at])) continue;
        if (at + 1 == text.size() || !IsPair(text[at], text[at + 1])) return at;
        ++at;
    }
    return text.npos;
}

}  // namespace

void LogParser::Feed(std::string_view bytes) {
    pending_.append(bytes);
    std::string_view rest = pending_;
    for (std::size_t end = FindLineEnd(rest, searched_); end != rest.npos; end = FindLineEnd(rest, 0)) {
        TakeLine(rest.substr(0, end), pendingOffset_);
        rest.remove_prefix(end);
        pendingOffset_ += end;
    }
    pending_.erase(0, pending_.size() - rest.size());
    searched_ = pending_.empty() ? 0 : pending_.size() - 1;
    if (pending_.size() < LongestLineBytes) return;
    sink_.OnBadInput(pendingOffset_, "more than 64 MiB without a line end");
    TakeLine(std::string_view(pending_).substr(0, LongestLineBytes), pendingOffset_);
    pending_.erase(0, LongestLineBytes);
    pendingOffset_ += LongestLineBytes;
    searched_ = 0;
}

void LogParser::Flush() {
    if (pending_.empty() && state_ != State::InBanner) Complete();
}

void LogParser::Finish() {
    if (!pending_.empty()) {
        sink_.OnBadInput(pendingOffset_, "the line that begins here is cut off by the end of the input");
        TakeLine(pending_, pendingOffset_);
    }
    Complete();
    pending_.clear();
    pendingOffset_ = 0;
    searched_ = 0;
}

void LogParser::TakeLine(std::string_view bytes, std::uint64_t offset) {
    if (bytes.size() % UnitSize != 0) {
        TakeOddLine(bytes, offset);
    } else {
        TakeText(Decode(bytes), offset);
    }
}

void LogParser::TakeOddLine(std::string_view bytes, std::uint64_t offset) {
    const std::u16string shifted = Decode(bytes.substr(1));
    const std::size_t next = FindLogBeginning(WithoutLineEnd(shifted), 0);
    const std::size_t cut = next != shifted.npos ? next * UnitSize : bytes.size() - 1;
    sink_.OnBadInput(offset + cut, "an incomplete character");
    TakeText(Decode(bytes.substr(0, cut)), offset);
    if (next != shifted.npos) TakeText(std::u16string_view(shifted).substr(next), offset + cut + 1);
}

void LogParser::TakeText(std::u16string_view text, std::uint64_t offset) {
    if (offset == 0 && text.starts_with(ByteOrderMark)) {
        text.remove_prefix(1);
        offset += UnitSize;
    }
    for (std::size_t next; (next = FindLogBeginning(WithoutLineEnd(text), 1)) != text.npos;) {
        TakePiece(text.substr(0, next), offset);
        text.remove_prefix(next);
        offset += next * UnitSize;
        sink_.OnBadInput(offset, "the previous line is cut off here");
    }
    TakePiece(text, offset);
}

void LogParser::TakePiece(std::u16string_view text, std::uint64_t offset) {
    if (text.empty()) return;
    if (const std::size_t unpaired = FindUnpairedSurrogate(text); unpaired != text.npos) {
        sink_.OnBadInput(offset + unpaired * UnitSize, "an unpaired surrogate");
    }
    const std::u16string_view content = WithoutLineEnd(text);
    if (ParseLogEntry(content)) {
        Begin(State::InLine, offset);
    } else if (state_ == State::InBanner) {
        return TakeBannerLine(content);
    } else if (IsBannerEdge(content)) {
        return Begin(State::InBanner, offset);
    } else if (state_ == State::Between) {
        Begin(State::InStray, offset);
    }
    if (state_ == State::InLine) line_ += text;
    end_ = offset + text.size() * UnitSize;
}

void LogParser::Begin(State state, std::uint64_t offset) {
    Complete();
    state_ = state;
    begin_ = offset;
}

void LogParser::TakeBannerLine(std::u16string_view text) {
    if (!IsBannerEdge(text)) {
        banner_.emplace_back(text);
        return;
    }
    sink_.OnBanner(banner_);
    banner_.clear();
    state_ = State::Between;
}

void LogParser::Complete() {
    const State completed = std::exchange(state_, State::Between);
    if (completed == State::InLine) {
        const std::u16string_view text = WithoutLineEnd(line_);
        sink_.OnLine(text, *ParseLogEntry(text));
    } else if (completed == State::InBanner) {
        sink_.OnBadInput(begin_, "the banner that begins here is incomplete");
        sink_.OnBanner(banner_);
    } else if (completed == State::InStray) {
        sink_.OnBadInput(begin_, std::to_string(end_ - begin_) + " bytes that belong to no line");
    }
    line_.clear();
    banner_.clear();
}

}  // namespace Host
