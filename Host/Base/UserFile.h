// Files that the user names.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace Host {

// The path for a text in UTF-8, which is how the program keeps all paths. A system's own narrow text may lack
// characters.
[[nodiscard]] inline std::filesystem::path PathOf(std::string_view utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

// Opens a file for reading, without conversion of line ends. If the system refuses, throws BadInput:
// SOURCE: "PATH" cannot be read: REASON. `source` is an option, for instance.
[[nodiscard]] std::ifstream OpenInputFile(std::string_view source, const std::string& path);

// Replaces the content of a file. If the system refuses, throws std::runtime_error: SOURCE: "PATH" cannot be written:
// REASON.
void WriteOutputFile(std::string_view source, const std::string& path, const std::string& content);

}  // namespace Host
