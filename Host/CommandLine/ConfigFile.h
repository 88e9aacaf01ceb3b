// The configuration file. Each line has a long option without its dashes and a value, as "every = 500ms". An option
// that is repeatable may have several lines. Flags are "true" or "false". Whitespace around a value and then one pair
// of double quotes around it are removed. Lines that begin with ";" or "#" are comments.
#pragma once

#include <CLI/CLI.hpp>

namespace Host {

// A line that is not valid is thrown as BadInput, with its number.
class ConfigFile final : public CLI::Config {
public:
    // `options` has the options that the file may set. It is borrowed.
    explicit ConfigFile(const CLI::App& options) : options_(options) {}

    std::vector<CLI::ConfigItem> from_config(std::istream& in) const override;
    std::string to_config(const CLI::App*, bool, bool, std::string) const override { return {}; }  // not used

private:
    const CLI::App& options_;
};

}  // namespace Host
