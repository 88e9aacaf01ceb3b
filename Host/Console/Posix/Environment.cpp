#include "Host/Console/Environment.h"

#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <filesystem>

namespace Host {

std::optional<std::string> EnvironmentVariable(const char* name) {
    const char* const value = getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

void SetVariableIfMissing(const char* name, const char* value) {
    constexpr int keepExisting = 0;
    setenv(name, value, keepExisting);
}

std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
    return {argv + std::min(argc, 1), argv + argc};
}

bool HasZoneDatabase() noexcept {
    return true;
}

bool SetLocalZone(const std::string& name) {
    const std::filesystem::path database = EnvironmentVariable("TZDIR").value_or("/usr/share/zoneinfo");
    const std::filesystem::path inside = std::filesystem::path(name).lexically_normal();
    const bool isName = inside.is_relative() && !inside.empty() && *inside.begin() != "..";
    if (!isName || !std::filesystem::is_regular_file(database / inside)) return false;
    constexpr int overwrite = 1;
    setenv("TZ", (":" + inside.string()).c_str(), overwrite);
    tzset();
    return true;
}

}  // namespace Host
