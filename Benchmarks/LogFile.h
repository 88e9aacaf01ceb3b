// The files that the log benchmarks write, in a directory that is removed at the end of the program.
#pragma once

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

namespace Benchmarks {

class LogDirectory {
public:
    static const std::filesystem::path& Path() {
        static const LogDirectory directory;
        return directory.path_;
    }

private:
    LogDirectory() { std::filesystem::create_directories(path_); }
    ~LogDirectory() { std::filesystem::remove_all(path_); }

    const std::filesystem::path path_ =
        std::filesystem::temp_directory_path() / ("LogBenchmark" + std::to_string(getpid()));
};

inline std::string Contents(const std::filesystem::path& file) {
    std::string contents(std::filesystem::file_size(file), '\0');
    std::ifstream(file, std::ios::binary).read(contents.data(), static_cast<std::streamsize>(contents.size()));
    return contents;
}

// Fails the benchmark unless the file has that many lines, and empties it. Called on one thread, after the loop.
inline void CheckLinesAndEmpty(benchmark::State& state, const std::filesystem::path& file, std::int64_t lines) {
    const std::string written = Contents(file);
    if (std::count(written.begin(), written.end(), '\n') != lines) state.SkipWithError("lines are missing");
    std::filesystem::resize_file(file, 0);
}

// The number of lines that all threads of a run have written, with `linesOfIteration` in each iteration.
inline std::int64_t LinesOfRun(const benchmark::State& state, std::int64_t linesOfIteration = 1) {
    return state.iterations() * state.threads() * linesOfIteration;
}

}  // namespace Benchmarks
