#include "Host/Console/ConsoleOutput.h"

#include <algorithm>
#include <ostream>

#include "Host/Base/TextWidth.h"

namespace Host {
namespace {

// Control sequences of ECMA-48.
constexpr char ToFirstColumn[] = "\r";
constexpr char EraseBelow[] = "\r\x1b[J";
constexpr char Dimmed[] = "\x1b[2m";
constexpr char Plain[] = "\x1b[0m";

constexpr std::string_view Prompt = "> ";

}  // namespace

ConsoleOutput::ConsoleOutput(std::ostream& out, std::ostream& messages, const std::optional<Terminal>& terminal,
                             std::function<void()> onBroken)
    : terminal_(terminal), onBroken_(std::move(onBroken)), out_(out), messages_(messages) {}

void ConsoleOutput::Write(const std::string& lines) {
    const Harbor::LockGuard lock(lock_);
    EraseLastLine();
    out_ << lines;
    DrawLastLine();
}

void ConsoleOutput::WriteMessage(const std::string& lines) {
    const Harbor::LockGuard lock(lock_);
    EraseLastLine();
    out_ << std::flush;
    messages_ << lines << std::flush;
    DrawLastLine();
}

void ConsoleOutput::SetStatusLine(const std::string& text) {
    const Harbor::LockGuard lock(lock_);
    statusLine_ = text;
    EraseLastLine();
    DrawLastLine();
}

void ConsoleOutput::SetTypedLine(const std::string& text) {
    const Harbor::LockGuard lock(lock_);
    typedLine_ = text;
    EraseLastLine();
    DrawLastLine();
}

// The status line ends with the cursor in the first column. When the window becomes narrower, a terminal may show the
// line on several rows; the cursor is then still at its beginning, and what is below is erased with it.
void ConsoleOutput::EraseLastLine() {
    if (isDrawn_) out_ << EraseBelow;
    isDrawn_ = false;
}

void ConsoleOutput::DrawLastLine() {
    isDrawn_ = terminal_ && !(statusLine_.empty() && typedLine_.empty());
    if (isDrawn_) {
        // One column stays free, since a terminal may wrap a line that fills its width.
        const std::size_t width = std::max<std::size_t>(terminal_->width(), Prompt.size() + 2) - 1;
        if (!typedLine_.empty()) {
            out_ << Prompt << EndOf(typedLine_, width - Prompt.size());
        } else {
            const std::string_view shown = BeginningOf(statusLine_, width);
            out_ << (terminal_->hasColors ? Dimmed : "") << shown << (terminal_->hasColors ? Plain : "")
                 << ToFirstColumn;
        }
    }
    if (!out_.flush()) onBroken_();
}

}  // namespace Host
