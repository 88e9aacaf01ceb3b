// Prints the lines of a log in UTF-8, or the slowest traced calls in it.
#pragma once

#include <deque>
#include <iosfwd>
#include <string>

#include "Host/Log/LogOptions.h"
#include "Host/Log/LogParser.h"
#include "Host/Log/SlowestCalls.h"

namespace Host {

class LogPrinter final : public LogSink {
public:
    // Borrows all three. Lines are written to `out`, and reports of input that is not valid to `messages`.
    LogPrinter(const LogOptions& options, std::ostream& out, std::ostream& messages);

    void OnLine(std::u16string_view text, const LogEntry& entry) override;
    void OnBanner(const std::vector<std::u16string>& lines) override;
    void OnBadInput(std::uint64_t offset, std::string_view reason) override;

    // Called at the end of what is there at the start: prints the last lines, if only those are shown.
    void ShowLast();
    // Called after the last line: prints what is known only then. Throws BadInput if there was input, but nothing that
    // the module writes.
    void End();

private:
    bool IsShown(const LogEntry& entry) const;
    void Print(std::string text);

    const LogOptions& options_;
    std::ostream& out_;
    std::ostream& messages_;
    std::optional<SlowestCalls> slowest_;
    std::optional<std::deque<std::string>> last_;  // lines that may be among the last ones; nothing: all are printed
    bool isLog_ = false;                           // a line or a banner was found
    bool hasBadInput_ = false;
};

}  // namespace Host
