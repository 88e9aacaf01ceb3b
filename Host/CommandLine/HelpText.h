// The texts of the host's help, and suggestions for mistyped options.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

namespace Host {

// Divides the description of an option or a command into lines, so that no line of the help has more than 100 columns.
[[nodiscard]] std::string InLines(const std::string& description);

// The long option of the app, or of its command in use, that differs least from the argument. Nothing if the argument
// is no long option, or none is similar.
[[nodiscard]] std::optional<std::string> SimilarOption(const CLI::App& app, const std::string& argument);

}  // namespace Host
