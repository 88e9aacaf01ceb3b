#include "Host/Log/LogPrinter.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

#include "Common/Base/Text.h"
#include "Common/Logging/LogSeverity.h"
#include "Host/Base/Failure.h"
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
    return {{"time", IsoLogTime(entry.time)}, {"severity", ToUtf8(entry.severity)},
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
            {"time", IsoLogTime(call.time)},
            {"process", call.process},
            {"thread", call.thread}};
}

void WriteText(std::ostream& out, std::int64_t microseconds, const SlowestCalls::Call& call) {
    out << std::setw(12) << microseconds / 1000 << '.' << std::setfill('0') << std::setw(3) << microseconds % 1000
        << std::setfill(' ') << " ms  " << ToUtf8(call.time) << "  " << std::setw(5) << call.process << ' '
        << std::setw(5) << call.thread << "  " << call.name << (call.exception ? "  (exception)" : "") << '\n';
}

}  // namespace

LogPrinter::LogPrinter(const LogOptions& options, std::ostream& out, std::ostream& messages)
    : options_(options), out_(out), messages_(messages) {
    if (options.slowestCalls) slowest_.emplace(*options.slowestCalls);
    if (options.last) last_.emplace();
}

void LogPrinter::OnLine(std::u16string_view text, const LogEntry& entry) {
    isLog_ = true;
    if (!IsShown(entry)) return;
    if (slowest_) {
        slowest_->Add(entry);
    } else {
        Print(options_.format == OutputFormat::Json ? JsonLine(ToJson(entry)) : InLines(text) + '\n');
    }
}

void LogPrinter::OnBanner(const std::vector<std::u16string>& lines) {
    isLog_ = true;
    const bool isFiltered =
        options_.leastSevere || options_.process || !options_.since.empty() || !options_.until.empty();
    if (slowest_ || isFiltered) return;
    if (options_.format == OutputFormat::Json) return Print(JsonLine(ToJson(lines)));
    const std::string edge = std::string(BannerWidth, '*') + '\n';
    std::string text = edge;
    for (const std::u16string& line : lines) text += ToUtf8(line) + '\n';
    Print(text + edge);
}

void LogPrinter::OnBadInput(std::uint64_t offset, std::string_view reason) {
    hasBadInput_ = true;
    out_.flush();  // so that the report appears at its place among the lines
    messages_ << "byte " << offset << ": " << reason << std::endl;
}

void LogPrinter::ShowLast() {
    if (!last_) return;
    for (const std::string& text : *last_) out_ << text;
    last_.reset();
}

void LogPrinter::End() {
    ShowLast();
    if (hasBadInput_ && !isLog_) throw InvalidValue("FILE", options_.file, "a log of the module");
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
    if (options_.leastSevere && SeverityNumber(entry.severity) > *options_.leastSevere) return false;
    if (options_.process && entry.process != *options_.process) return false;
    // Times have a fixed width, so their order is that of their characters.
    return entry.time >= options_.since && entry.time.substr(0, options_.until.size()) <= options_.until;
}

void LogPrinter::Print(std::string text) {
    if (!last_) {
        out_ << text;
        return;
    }
    last_->push_back(std::move(text));
    if (last_->size() > *options_.last) last_->pop_front();
}

}  // namespace Host
