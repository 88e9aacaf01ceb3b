// Lines of output, and on a terminal a status line below them.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

#include "Common/Base/Lock.h"
#include "Host/Console/Terminal.h"

namespace Host {

// Any thread may call any operation; lines never mix.
class ConsoleOutput {
public:
    // `terminal` is the one that the stream writes to, if any. `onBroken` is called after each write that fails, on the
    // thread that wrote, with the output's lock held.
    ConsoleOutput(std::ostream& out, const std::optional<Terminal>& terminal, std::function<void()> onBroken);

    // Writes lines that end with '\n' above the status line.
    void Write(const std::string& lines);

    [[nodiscard]] bool IsTerminal() const noexcept { return terminal_.has_value(); }

    // Only for a terminal. The text is cut to the terminal's width.
    void SetStatusLine(const std::string& text);
    // Does nothing if there is no status line.
    void RemoveStatusLine();

private:
    void Redraw(const std::string& lines, const std::string& statusLine);

    const std::optional<Terminal> terminal_;
    const std::function<void()> onBroken_;
    Harbor::Lock lock_;  // guards the stream and the status line
    std::ostream& out_;
    std::string statusLine_;  // what the terminal shows; empty for none
};

}  // namespace Host
