#include "Host/Console/Terminal.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "Host/Console/Environment.h"

#include "Host/Console/Windows/System.h"

namespace Host {
namespace {

std::size_t Width() {
    constexpr std::size_t usualWidth = 80;
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &info)) return usualWidth;
    return info.srWindow.Right >= info.srWindow.Left
               ? static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1)
               : usualWidth;
}

}  // namespace

void PrepareOutput() noexcept {
    ::SetConsoleOutputCP(CP_UTF8);
    for (std::FILE* const stream : {stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

std::optional<Terminal> TerminalOfOutput() {
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (!::GetConsoleMode(output, &mode)) return std::nullopt;
    // A console that knows no control sequences gets no status line.
    if (!::SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING)) return std::nullopt;
    return Terminal{.width = &Width, .hasColors = EnvironmentVariable("NO_COLOR").value_or("").empty()};
}

}  // namespace Host
