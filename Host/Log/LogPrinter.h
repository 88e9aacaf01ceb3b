// Shows the lines of a log in UTF-8, or the slowest traced calls in it.
#pragma once

#include <iosfwd>

#include "Host/Log/LogOptions.h"
#include "Host/Log/LogParser.h"
#include "Host/Log/SlowestCalls.h"

namespace Host {

class LogPrinter final : public LogSink {
public:
    // Lines go to `out`, what is wrong with the input to `messages`.
    LogPrinter(const LogOptions& options, std::ostream& out, std::ostream& messages);

    void OnLine(std::u16string_view text, const LogEntry& entry) override;
    void OnBanner(const std::vector<std::u16string>& lines) override;
    void OnBadInput(std::uint64_t offset, std::string_view reason) override;

    // What can be shown only at the end.
    void End();

private:
    bool IsShown(const LogEntry& entry) const;

    const LogOptions& options_;
    std::ostream& out_;
    std::ostream& messages_;
    std::optional<SlowestCalls> slowest_;
};

}  // namespace Host
