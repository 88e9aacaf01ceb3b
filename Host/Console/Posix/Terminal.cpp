#include "Host/Console/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "Host/Console/Environment.h"

namespace Host {
namespace {

std::string Variable(const char* name) {
    return EnvironmentVariable(name).value_or("");
}

std::size_t Width() {
    constexpr std::size_t usualWidth = 80;
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usualWidth;
}

}  // namespace

void PrepareOutput() noexcept {}

std::optional<Terminal> TerminalOfOutput() {
    if (isatty(STDOUT_FILENO) == 0 || Variable("TERM") == "dumb") return std::nullopt;
    return Terminal{.width = &Width, .hasColors = Variable("NO_COLOR").empty()};
}

}  // namespace Host
