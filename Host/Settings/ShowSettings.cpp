#include "Host/Settings/ShowSettings.h"

#include <iomanip>
#include <iostream>

#include "Harbor/Module.h"
#include "Host/Base/Failure.h"
#include "Host/Base/Json.h"
#include "Host/Base/UserFile.h"
#include "Host/Settings/ModuleSettings.h"

namespace Host {
namespace {

Json ToJson(const ModuleSetting& setting) {
    return {{"section", setting.section}, {"key", setting.key}, {"value", setting.value}, {"source", setting.source}};
}

void PrintText(const ModuleSetting& setting) {
    std::cout << std::left << std::setw(15) << setting.section << std::setw(34) << setting.key << std::setw(22)
              << setting.value << "  " << setting.source << '\n';
}

}  // namespace

int ShowSettings(const SettingsOptions& options) {
    const Harbor::Module module = Harbor::Module::Load(PathOf(options.modulePath));
    for (const ModuleSetting& setting : SettingsOf(module.Handle())) {
        if (options.format == OutputFormat::Json) {
            std::cout << JsonLine(ToJson(setting));
        } else {
            PrintText(setting);
        }
    }
    const std::string logFile = LogFileOf(module.Handle());
    std::cout << (options.format == OutputFormat::Json ? JsonLine({{"logFile", logFile}})
                                                       : "The log is " + logFile + "\n");
    return ExitCode::Success;
}

}  // namespace Host
