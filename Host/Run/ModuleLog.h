// Reports the warnings and errors that the module writes to its log during a run.
#pragma once

#include <string>
#include <vector>

#include "Host/Log/LogParser.h"
#include "Host/Log/LogSource.h"
#include "Host/Run/Report.h"

namespace Host {

// Lines of other processes are left out, and so are the lists of living objects: the host itself asks for these. Used
// by the host's main thread.
class ModuleLog final : private LogSink {
public:
    // Reports only lines that are written from now on. Borrows the report.
    ModuleLog(const std::string& file, Report& report);

    // Reports the lines that were written since the last call.
    void ReportNewLines();

private:
    void OnLine(std::u16string_view text, const LogEntry& entry) override;
    void OnBanner(const std::vector<std::u16string>&) override {}
    void OnBadInput(std::uint64_t, std::string_view) override {}

    Report& report_;
    const std::uint16_t process_;  // the low 16 bits of the id, as in the log
    FileSource source_;
    LogParser parser_;
    std::vector<char> buffer_;
};

}  // namespace Host
