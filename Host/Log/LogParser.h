// From the bytes of a log file to its lines and banners.
//
// The file is UTF-16 little-endian. A message may have line breaks in it: what doesn't begin like a line belongs to the
// line before. A write that failed half-way leaves a cut line, perhaps cut inside a character; what was written behind
// it is found again.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Host/Log/LogEntry.h"

namespace Host {

class LogSink {
public:
    // The line as a whole, without its end, and its parts. Both are valid for the call.
    virtual void OnLine(std::u16string_view text, const LogEntry& entry) = 0;
    // The lines between the two rows of asterisks.
    virtual void OnBanner(const std::vector<std::u16string>& lines) = 0;
    // What isn't as it should be, and the byte of the file where.
    virtual void OnBadInput(std::uint64_t offset, std::string_view reason) = 0;

protected:
    ~LogSink() = default;
};

class LogParser {
public:
    explicit LogParser(LogSink& sink) noexcept : sink_(sink) {}

    // The next bytes, in pieces of any size. A line is handed on when the next one shows that it is complete.
    void Feed(std::string_view bytes);
    // Hands on the line that stands at the end, if it looks complete: for a file that is still written.
    void Flush();
    // The end of the input. Another one may follow, with offsets of its own.
    void Finish();

private:
    enum class State { Between, InLine, InBanner, InStray };

    // Lines as they come out of the bytes: `text` is raw, with its line end.
    void TakeLine(std::string_view bytes, std::uint64_t offset);
    void TakeOddLine(std::string_view bytes, std::uint64_t offset);
    void TakeText(std::u16string_view text, std::uint64_t offset);
    // A piece of a line that no other line begins in.
    void TakePiece(std::u16string_view text, std::uint64_t offset);
    void Begin(State state, std::uint64_t offset);
    void TakeBannerLine(std::u16string_view text);
    void Complete();

    LogSink& sink_;

    std::string pending_;              // the bytes of a line that has no end yet
    std::uint64_t pendingOffset_ = 0;  // of its first byte
    std::size_t searched_ = 0;         // up to here there is no line end in it

    State state_ = State::Between;
    std::uint64_t begin_ = 0;  // of the line, the banner or the stray bytes that the state tells of
    std::uint64_t end_ = 0;
    std::u16string line_;
    std::vector<std::u16string> banner_;
};

}  // namespace Host
