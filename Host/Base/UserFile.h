// Files that the user names.
#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace Host {

// Opens a file for reading, without conversion of line ends. If the system refuses, throws BadInput:
// SOURCE: "PATH" cannot be read: REASON. `source` is an option, for instance.
[[nodiscard]] std::ifstream OpenInputFile(std::string_view source, const std::string& path);

// Replaces the content of a file. If the system refuses, throws CallFailure: SOURCE: "PATH" cannot be written: REASON.
void WriteOutputFile(std::string_view source, const std::string& path, const std::string& content);

}  // namespace Host
