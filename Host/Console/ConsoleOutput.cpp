#include "Host/Console/ConsoleOutput.h"

#include <ostream>

namespace Host {
namespace {

// Control sequences of ECMA-48.
constexpr char EraseLine[] = "\r\x1b[K";
constexpr char Dimmed[] = "\x1b[2m";
constexpr char Plain[] = "\x1b[0m";

}  // namespace

ConsoleOutput::ConsoleOutput(std::ostream& out, const std::optional<Terminal>& terminal, std::function<void()> onBroken)
    : terminal_(terminal), onBroken_(std::move(onBroken)), out_(out) {}

void ConsoleOutput::Write(const std::string& lines) {
    const std::lock_guard lock(lock_);
    Redraw(lines, statusLine_);
}

void ConsoleOutput::SetStatusLine(const std::string& text) {
    std::string line = text.substr(0, terminal_->width - 1);
    if (terminal_->hasColors) line = Dimmed + line + Plain;
    const std::lock_guard lock(lock_);
    Redraw("", line);
}

void ConsoleOutput::RemoveStatusLine() {
    const std::lock_guard lock(lock_);
    Redraw("", "");
}

void ConsoleOutput::Redraw(const std::string& lines, const std::string& statusLine) {
    if (!statusLine_.empty()) out_ << EraseLine;
    out_ << lines << statusLine << std::flush;
    statusLine_ = statusLine;
    if (!out_) onBroken_();
}

}  // namespace Host
