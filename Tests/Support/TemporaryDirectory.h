// A directory for the files of a test.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

// A new, empty directory. The destructor removes it with its contents.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string path = (std::filesystem::temp_directory_path() / "PlatformTest-XXXXXX").string();
        EXPECT_NE(mkdtemp(path.data()), nullptr);
        path_ = path;
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() { std::filesystem::remove_all(path_); }

    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

inline void WriteAll(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream{path, std::ios::binary} << bytes;
}
