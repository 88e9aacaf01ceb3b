// Lines of output, and on a terminal one more line below them: the line that is being typed or, while there is none, a
// status line.
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
    // Borrows the streams. `terminal` is the one that `out` writes to, if any. `onBroken` is called after each write to
    // `out` that fails, on the thread that wrote, with the output's lock held.
    ConsoleOutput(std::ostream& out, std::ostream& messages, const std::optional<Terminal>& terminal,
                  std::function<void()> onBroken);

    // Writes lines that end with '\n' above the last line of the terminal.
    void Write(const std::string& lines);
    // The same to the stream of messages.
    void WriteMessage(const std::string& lines);

    [[nodiscard]] bool IsTerminal() const noexcept { return terminal_.has_value(); }

    // These have an effect only on a terminal. Texts are cut to its width; an empty text removes the line.
    void SetStatusLine(const std::string& text);
    void SetTypedLine(const std::string& text);

private:
    void EraseLastLine();
    void DrawLastLine();

    const std::optional<Terminal> terminal_;
    const std::function<void()> onBroken_;
    Harbor::Lock lock_;  // guards all members below
    std::ostream& out_;
    std::ostream& messages_;
    std::string statusLine_;
    std::string typedLine_;
    bool isDrawn_ = false;  // the terminal shows one of the two
};

}  // namespace Host
