#include "Host/Console/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "Host/Console/Environment.h"

namespace Host {
namespace {

std::string Variable(const char* name) {
    return EnvironmentVariable(name).value_or("");
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
