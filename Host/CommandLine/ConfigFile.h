// The configuration file: the long options without their dashes, one a line, as "every = 500ms". An option that may be
// repeated has a line for each value. Flags are "true" or "false". Blanks around a value and one pair of double quotes
// around it go; lines that begin with ";" or "#" are comments.
#pragma once

#include <CLI/CLI.hpp>

namespace Host {

// Throws BadInput with the number of the line.
class ConfigFile final : public CLI::Config {
public:
    // `options` knows what may stand in the file, and outlives this.
    explicit ConfigFile(const CLI::App& options) : options_(options) {}

    std::vector<CLI::ConfigItem> from_config(std::istream& in) const override;
    std::string to_config(const CLI::App*, bool, bool, std::string) const override { return {}; }  // nobody asks for it

private:
    const CLI::App& options_;
};

}  // namespace Host
