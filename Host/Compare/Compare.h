// The command `compare`: asks the module's trigger strategies whether a change of the configuration triggers a run.
#pragma once

#include <string>

#include "Host/Base/OutputFormat.h"

namespace Host {

struct CompareOptions {
    std::string modulePath;
    std::string oldFile;
    std::string newFile;
    OutputFormat format = OutputFormat::Text;
};

// Prints each strategy's answer and its reason. Returns the exit code: ExitCode::Success if the comparison of the items
// triggers a run, else ExitCode::NoTrigger.
[[nodiscard]] int Compare(const CompareOptions& options);

}  // namespace Host
