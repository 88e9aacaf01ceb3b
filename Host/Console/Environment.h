// The environment of the process. Texts are UTF-8. These functions are called before any other thread runs, unless
// noted.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Host {

// Nothing if the variable is not set. May be called on any thread while no thread changes the environment.
[[nodiscard]] std::optional<std::string> EnvironmentVariable(const char* name);

// Keeps the value of a variable that is set already.
void SetVariableIfMissing(const char* name, const char* value);

// The arguments of the program, without its name.
[[nodiscard]] std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

// False on Windows: its time zones have other names, and a process has the zone of the system.
[[nodiscard]] bool HasZoneDatabase() noexcept;
// Makes a zone of the system's database, such as "Europe/Helsinki", the time zone of the process. Returns false, and
// changes nothing, if the database has no such zone.
[[nodiscard]] bool SetLocalZone(const std::string& name);

}  // namespace Host
