// Finds the lines and banners in the bytes of a log file.
//
// The file is UTF-16 little-endian. A message may have line breaks in it: a line of text that does not begin like a
// line of the log belongs to the one before. A write that failed after some bytes leaves a line that is cut off,
// perhaps inside a character; what was written after it is found again.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Host/Log/LogEntry.h"

namespace Host {

class LogSink {
public:
    // A line without its end, and its parts. Both are valid during the call.
    virtual void OnLine(std::u16string_view text, const LogEntry& entry) = 0;
    // A banner: the lines between the two rows of asterisks.
    virtual void OnBanner(const std::vector<std::u16string>& lines) = 0;
    // Something that is not a correct log, and the offset in bytes at which it begins.
    virtual void OnBadInput(std::uint64_t offset, std::string_view reason) = 0;

protected:
    ~LogSink() = default;
};

class LogParser {
public:
    explicit LogParser(LogSink& sink) noexcept : sink_(sink) {}

    // Takes the next bytes, in blocks of any size. A line is passed on when the beginning of the next one shows that it
    // is complete.
    void Feed(std::string_view bytes);
    // Passes on the last line if it looks complete: for a file that is still being written.
    void Flush();
    // Ends the input. Another input may follow; its offsets start at 0 again.
    void Finish();

private:
    enum class State { Between, InLine, InBanner, InStray };

    // These take a line of text with its end.
    void TakeLine(std::string_view bytes, std::uint64_t offset);
    void TakeOddLine(std::string_view bytes, std::uint64_t offset);
    void TakeText(std::u16string_view text, std::uint64_t offset);
    // Takes a part of a line in which no other line begins.
    void TakePiece(std::u16string_view text, std::uint64_t offset);
    void Begin(State state, std::uint64_t offset);
    void TakeBannerLine(std::u16string_view text);
    void Complete();

    LogSink& sink_;

    std::string pending_;              // the bytes of a line whose end is not known yet
    std::uint64_t pendingOffset_ = 0;  // of its first byte
    std::size_t searched_ = 0;         // no line end before this position

    State state_ = State::Between;
    std::uint64_t begin_ = 0;  // of the line, banner or stray bytes of the state
    std::uint64_t end_ = 0;
    std::u16string line_;
    std::vector<std::u16string> banner_;
};

}  // namespace Host
