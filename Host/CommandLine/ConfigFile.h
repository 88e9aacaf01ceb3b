// The configuration file of a run, in UTF-8. Each line has a long option without its dashes and a value, as
// "every = 500ms". An option that is repeatable may have several lines, and "name = heartbeat" names the registration
// of the lines above it. Flags are "true" or "false". Whitespace around a value and then one pair of double quotes
// around it are removed. Lines that begin with ";" or "#" are comments.
#pragma once

#include "Host/Base/Failure.h"
#include "Host/CommandLine/GivenValues.h"

namespace Host {

// Returns the values of a file. `options` has the options that it may set. A line that is not valid is added to the
// faults. Throws BadInput if the file cannot be read.
[[nodiscard]] GivenValues ReadConfigFile(const std::string& path, const CLI::App& options, Faults& faults);

}  // namespace Host
