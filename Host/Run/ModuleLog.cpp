#include "Host/Run/ModuleLog.h"

#include "Common/Logging/LogSeverity.h"
#include "Platform/Process.h"

namespace Host {
namespace {

constexpr std::size_t BlockSize = std::size_t{1} << 16;
constexpr std::u16string_view AliveObjectsSource = u"DbgAliveObjectsTracker";

bool IsReported(std::u16string_view severity) {
    return severity == Harbor::LogSeverityName(Harbor::LogSeverity::Warn) ||
           severity == Harbor::LogSeverityName(Harbor::LogSeverity::Err) ||
           severity == Harbor::LogSeverityName(Harbor::LogSeverity::Crit);
}

}  // namespace

ModuleLog::ModuleLog(const std::string& file, Report& report)
    : report_(report),
      process_(static_cast<std::uint16_t>(Platform::GetCurrentProcessId())),
      source_(file, IfMissing::Wait),
      parser_(*this),
      buffer_(BlockSize) {
    source_.SkipToEnd();
}

void ModuleLog::ReportNewLines() {
    do {
        while (const std::size_t count = source_.Read(buffer_)) parser_.Feed({buffer_.data(), count});
        parser_.Flush();  // the module writes whole lines
    } while (source_.SwitchToNewFile());
}

void ModuleLog::OnLine(std::u16string_view, const LogEntry& entry) {
    const bool isAsked = entry.source.starts_with(AliveObjectsSource);
    if (entry.process == process_ && IsReported(entry.severity) && !isAsked) report_.AddModuleLine(entry);
}

}  // namespace Host
