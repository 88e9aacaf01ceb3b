// Prints the lines of a log in UTF-8, or the slowest traced calls in it.
#pragma once

#include <iosfwd>

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

    // Called after the last line: prints what is known only then.
    void End();

private:
    bool IsShown(const LogEntry& entry) const;

    const LogOptions& options_;
    std::ostream& out_;
    std::ostream& messages_;
    std::optional<SlowestCalls> slowest_;
};

}  // namespace Host
