// What can be said to the host while it runs.
#pragma once

#include <chrono>
#include <string_view>
#include <variant>
#include <vector>

#include "ConfigServer/ConfigServer.h"

namespace Host {

struct WriteCommand {
    Harbor::WideString path;
    std::vector<ConfigServer::TextAttribute> attributes;
};
struct AliveCommand {};
struct StatusCommand {};
struct HelpCommand {};
struct QuitCommand {};
using Command = std::variant<WriteCommand, AliveCommand, StatusCommand, HelpCommand, QuitCommand>;

// One command a line; a word with blanks in it stands in double quotes. Anything else is thrown as BadInput, with the
// form that would be right; `source` tells where the line came from.
[[nodiscard]] Command ParseCommand(std::string_view line, std::string_view source = "command");

// A line for each command.
[[nodiscard]] std::string CommandHelp();

struct TimedCommand {
    std::chrono::milliseconds after;  // since the host has registered everything
    Command command;
};

// "3s start Plant Line1"
[[nodiscard]] TimedCommand ParseTimedCommand(std::string_view text);

}  // namespace Host
