#include "Host/Log/LogPrinter.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

#include "Common/Base/Text.h"
#include "Common/Logging/LogSeverity.h"
#include "Host/Base/Json.h"

namespace Host {

using Harbor::ToUtf8;

namespace {

// A severity without a name is less severe than all others.
std::uint32_t SeverityNumber(std::u16string_view name) {
    return static_cast<std::uint32_t>(std::ranges::find(Harbor::LogSeverityNames, name) -
                                      Harbor::LogSeverityNames.begin());
}

// Converts the line ends to those of text files on this system.
std::string InLines(std::u16string_view text) {
    std::string lines = ToUtf8(text);
    for (std::size_t at = 0; (at = lines.find("\r\n", at)) != lines.npos;) lines.erase(at, 1);
    return lines;
}

Json ToJson(const LogEntry& entry) {
    const std::size_t indentation = std::min(entry.message.find_first_not_of(u' '), entry.message.size());
    return {{"time", ToUtf8(entry.time)},     {"severity", ToUtf8(entry.severity)},
            {"process", entry.process},       {"thread", entry.thread},
            {"source", ToUtf8(entry.source)}, {"line", entry.line},
            {"indentation", indentation},     {"message", ToUtf8(entry.message.substr(indentation))}};
}

Json ToJson(const std::vector<std::u16string>& banner) {
    Json lines = Json::array();
    for (const std::u16string& line : banner) lines.push_back(ToUtf8(line));
    return {{"banner", lines}};
}

Json ToJson(std::int64_t microseconds, const SlowestCalls::Call& call) {
    return {{"ms", static_cast<double>(microseconds) / 1000},
            {"name", call.name},
            {"exception", call.exception},
            {"time", call.time},
            {"process", call.process},
            {"thread", call.thread}};
}

void WriteText(std::ostream& out, std::int64_t microseconds, const SlowestCalls::Call& call) {
    out << std::setw(12) << microseconds / 1000 << '.' << std::setfill('0') << std::setw(3) << microseconds % 1000
        << std::setfill(' ') << " ms  " << call.time << "  " << std::setw(5) << call.process << ' ' << std::setw(5)
        << call.thread << "  " << call.name << (call.exception ? "  (exception)" : "") << '\n';
}

}  // namespace

LogPrinter::LogPrinter(const LogOptions& options, std::ostream& out, std::ostream& messages)
    : options_(options), out_(out), messages_(messages) {
    if (options.slowestCalls) slowest_.emplace(*options.slowestCalls);
}

void LogPrinter::OnLine(std::u16string_view text, const LogEntry& entry) {
    if (!IsShown(entry)) return;
    if (slowest_) {
        slowest_->Add(entry);
    } else if (options_.format == OutputFormat::Json) {
        out_ << JsonLine(ToJson(entry));
    } else {
        out_ << InLines(text) << '\n';
    }
}

void LogPrinter::OnBanner(const std::vector<std::u16string>& lines) {
    if (slowest_ || options_.leastSevere) return;
    if (options_.format == OutputFormat::Json) {
        out_ << JsonLine(ToJson(lines));
        return;
    }
    const std::string edge(BannerWidth, '*');
    out_ << edge << '\n';
    for (const std::u16string& line : lines) out_ << ToUtf8(line) << '\n';
    out_ << edge << '\n';
}

void LogPrinter::OnBadInput(std::uint64_t offset, std::string_view reason) {
    out_.flush();  // so that the report appears at its place among the lines
    messages_ << "byte " << offset << ": " << reason << std::endl;
}

void LogPrinter::End() {
    if (!slowest_) return;
    for (const auto& [microseconds, call] : slowest_->Get()) {
        if (options_.format == OutputFormat::Json) {
            out_ << JsonLine(ToJson(microseconds, call));
        } else {
            WriteText(out_, microseconds, call);
        }
    }
}

bool LogPrinter::IsShown(const LogEntry& entry) const {
    return !options_.leastSevere || SeverityNumber(entry.severity) <= *options_.leastSevere;
}

}  // namespace Host
