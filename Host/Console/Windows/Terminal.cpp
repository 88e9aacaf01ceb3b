#include "Host/Console/Terminal.h"

#include "Host/Console/Environment.h"

#include "Host/Console/Windows/System.h"

namespace Host {

std::optional<Terminal> TerminalOfOutput() {
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (!::GetConsoleMode(output, &mode)) return std::nullopt;
    ::SetConsoleOutputCP(CP_UTF8);
    // A console that knows no control sequences gets no status line.
    if (!::SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING)) return std::nullopt;
    Terminal terminal;
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (::GetConsoleScreenBufferInfo(output, &info) && info.srWindow.Right >= info.srWindow.Left) {
        terminal.width = static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
    }
    terminal.hasColors = EnvironmentVariable("NO_COLOR").value_or("").empty();
    return terminal;
}

}  // namespace Host
