// The command line and the configuration file.
#pragma once

#include <string>
#include <variant>

#include "Host/Compare/Compare.h"
#include "Host/Log/LogOptions.h"
#include "Host/Run/Check.h"
#include "Host/Schedules/Explain.h"
#include "Host/Schedules/NextRuns.h"
#include "Host/Settings/ShowSettings.h"

namespace Host {

// Asks for a text to be printed and nothing else: the help or the version.
struct ShowText {
    std::string text;
};

using Options = std::variant<RunOptions, CheckOptions, CompareOptions, LogOptions, NextOptions, ExplainOptions,
                             SettingsOptions, ShowText>;

// Reads the arguments of main(), and the configuration file that they name. Input that is not valid is thrown as
// BadInput. May set the process's time zone, so no other thread may run yet.
[[nodiscard]] Options ParseOptions(int argc, const char* const* argv);

}  // namespace Host
