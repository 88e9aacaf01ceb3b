// Files for the installation that are made from the table of options.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace Host {

// Returns the manual page, in the language of man(7).
[[nodiscard]] std::string ManualPage(const CLI::App& app, const std::string& version);

// Returns a script that makes bash complete options and commands.
[[nodiscard]] std::string BashCompletion(const CLI::App& app);

}  // namespace Host
