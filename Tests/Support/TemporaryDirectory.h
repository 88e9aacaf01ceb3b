// A directory for the files of a test.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "Support/ThisSystem.h"

// A new, empty directory. The destructor removes it with its contents.
class TemporaryDirectory {
public:
    TemporaryDirectory() : path_(ThisSystem::MakeTemporaryDirectory()) {}  // constants of this type need it
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() { std::filesystem::remove_all(path_); }

    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

private:
    const std::filesystem::path path_;
};

inline void WriteAll(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream{path, std::ios::binary} << bytes;
}
