// The commands that the host takes while it runs.
#pragma once

#include <chrono>
#include <string>
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
struct TreeCommand {
    std::string file;  // empty: print the tree
};
struct HelpCommand {};
struct QuitCommand {};
using Command = std::variant<WriteCommand, AliveCommand, StatusCommand, TreeCommand, HelpCommand, QuitCommand>;

// Reads a line with one command; a word with spaces in it is in double quotes. Throws BadInput, with the expected form,
// if the line is not valid. The message begins with `source`, which says where the line is from.
[[nodiscard]] Command ParseCommand(std::string_view line, std::string_view source = "command");

// The list of commands, with a line for each.
[[nodiscard]] std::string CommandHelp();

struct TimedCommand {
    std::chrono::milliseconds after;  // counted from the end of the registrations
    Command command;
};

// Reads "3s start Plant Line1". `source` begins the message of BadInput.
[[nodiscard]] TimedCommand ParseTimedCommand(std::string_view text, std::string_view source);

}  // namespace Host
