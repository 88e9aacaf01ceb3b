#include "Host/Console/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace Host {
namespace {

std::string_view Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace

std::optional<Terminal> TerminalOfOutput() {
    if (isatty(STDOUT_FILENO) == 0 || Variable("TERM") == "dumb") return std::nullopt;
    Terminal terminal;
    if (winsize size{}; ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) terminal.width = size.ws_col;
    terminal.hasColors = Variable("NO_COLOR").empty();
    return terminal;
}

}  // namespace Host
