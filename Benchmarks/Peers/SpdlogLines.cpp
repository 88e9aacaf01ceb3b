// An equal line by spdlog, written to the file before the statement returns. It has 8-bit characters, half the bytes.
#define SPDLOG_ACTIVE_LEVEL SPDLOG_LEVEL_INFO

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include "BenchmarkSupport.h"
#include "LogFile.h"

namespace {

const std::filesystem::path& SpdlogFile() {
    static const std::filesystem::path path = Benchmarks::LogDirectory::Path() / "Spdlog.log";
    return path;
}

spdlog::logger& FileLog() {
    static spdlog::logger logger = [] {
        spdlog::logger made("file", std::make_shared<spdlog::sinks::basic_file_sink_mt>(SpdlogFile().string()));
        made.set_pattern("%Y-%m-%d %H:%M:%S.%F | %-4l |%5P %5t | %26s:%-4#| %v");
        made.flush_on(spdlog::level::info);
        return made;
    }();
    return logger;
}

void SpdlogLine(benchmark::State& state) {
    spdlog::logger& log = FileLog();
    const void* const subscription = &state;
    {
        const Benchmarks::UserTime user(state);
        for (auto _ : state) {
            SPDLOG_LOGGER_INFO(&log, "Subscription '{:016X}' becomes triggered, call {}",
                               reinterpret_cast<std::uintptr_t>(subscription), 42u);
        }
    }
    if (state.thread_index() == 0) Benchmarks::CheckLinesAndEmpty(state, SpdlogFile(), Benchmarks::LinesOfRun(state));
    Benchmarks::ReportEach(state, 1);
}
BENCHMARK(SpdlogLine)->UseRealTime()->ThreadRange(1, 4);

}  // namespace
