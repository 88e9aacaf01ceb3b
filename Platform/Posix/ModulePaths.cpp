#include "ModulePaths.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace Platform::Posix {

namespace {

std::string WithoutDeletedMark(std::string_view path) {
    constexpr std::string_view mark = " (deleted)";
    if (path.ends_with(mark)) path.remove_suffix(mark.size());
    return std::string{path};
}

// A line of the memory map: "start-end rights offset device inode   path". Only the path may contain blanks.
struct Mapping {
    std::uintptr_t start = 0;
    std::string_view path;  // empty for memory without a file
};

Mapping ParseMapping(std::string_view line) noexcept {
    Mapping mapping;
    std::from_chars(line.data(), line.data() + line.size(), mapping.start, 16);
    const std::size_t path = line.find('/');
    if (path != std::string_view::npos) mapping.path = line.substr(path);
    return mapping;
}

}  // namespace

std::string MainModulePath() {
    std::error_code error;
    return WithoutDeletedMark(std::filesystem::read_symlink("/proc/self/exe", error).native());
}

std::string MainModuleDirectory() {
    const std::string path = MainModulePath();
    return path.substr(0, path.rfind('/') + 1);
}

std::string LibraryPath(HMODULE module) {
    std::ifstream maps{"/proc/self/maps"};
    for (std::string line; std::getline(maps, line);) {
        const Mapping mapping = ParseMapping(line);
        if (mapping.start == reinterpret_cast<std::uintptr_t>(module)) return WithoutDeletedMark(mapping.path);
    }
    return {};
}

}  // namespace Platform::Posix
