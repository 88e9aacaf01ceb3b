// Log statements and traces, enabled and disabled. INFO is enabled, DBG is disabled.
#include <fcntl.h>

#include "BenchmarkSupport.h"
#include "Common/Logging/FileLogger.h"
#include "Common/Logging/FunctionTrace.h"
#include "CountedAllocations.h"
#include "LogFile.h"
#include "Platform/Time.h"

namespace {

using namespace Harbor;
using Benchmarks::CheckLinesAndEmpty;
using Benchmarks::LinesOfRun;
using Benchmarks::LogDirectory;
using Benchmarks::ReportEach;

constexpr WideChar TracedName[] = u"DataCollection::ActionManagement::ActionManager::OnTimerEvent";

std::filesystem::path ProductFile() {
    return LogDirectory::Path() / "Product.log";
}

void WriteLine(const void* subscription) {
    LOG(Info, u"Subscription '" << subscription << u"' becomes triggered, call " << 42u);
}

// One line of the product as it is in the file.
std::string& SampleLine() {
    static std::string line;
    return line;
}

void DisabledStatement(benchmark::State& state) {
    std::uint32_t evaluated = 0;
    const std::uint64_t before = Benchmarks::AllocationsOfThisThread();
    for (auto _ : state) LOG(Dbg, u"Subscription '" << ++evaluated << u"' becomes triggered");
    const std::uint64_t allocations = Benchmarks::AllocationsOfThisThread() - before;
    if (evaluated != 0) state.SkipWithError("the operands were evaluated");
    // Not 0 in a run of seconds, since the log then reads its settings again.
    state.counters["allocs"] = static_cast<double>(allocations);
    ReportEach(state, 1);
}
BENCHMARK(DisabledStatement);

void TickReadAndAtomicLoad(benchmark::State& state) {
    std::atomic<std::uint32_t> limit{LogSeverity::Info};
    for (auto _ : state) {
        benchmark::DoNotOptimize(Platform::GetTickCount());
        benchmark::DoNotOptimize(limit.load(std::memory_order_relaxed));
    }
    ReportEach(state, 1);
}
BENCHMARK(TickReadAndAtomicLoad);

void EnabledLine(benchmark::State& state) {
    {
        const Benchmarks::UserTime user(state);
        for (auto _ : state) WriteLine(&state);
    }
    if (state.thread_index() == 0) CheckLinesAndEmpty(state, ProductFile(), LinesOfRun(state));
    ReportEach(state, 1);
}
BENCHMARK(EnabledLine)->UseRealTime()->ThreadRange(1, 4);

void BareWrite(benchmark::State& state) {
    static const std::filesystem::path path = LogDirectory::Path() / "Bare.log";
    const std::string& line = SampleLine();
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    {
        const Benchmarks::UserTime user(state);
        for (auto _ : state) {
            if (write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
                state.SkipWithError("the file takes no more");
            }
        }
    }
    if (state.thread_index() == 0) CheckLinesAndEmpty(state, path, LinesOfRun(state));
    close(file);
    ReportEach(state, 1);
}
BENCHMARK(BareWrite)->UseRealTime()->ThreadRange(1, 4);

template <void (*Call)()>
void EnabledPair(benchmark::State& state) {
    for (auto _ : state) Call();
    CheckLinesAndEmpty(state, ProductFile(), LinesOfRun(state, 2));
    ReportEach(state, 1);
}

void TracedCall() {
    TRACE_FUNCTION(Info, TracedName);
}
void TwoLines() {
    LOG(Info, u"Entering: " << TracedName);
    LOG(Info, u"Exiting: " << TracedName << u" [0.001 ms]");
}
BENCHMARK_TEMPLATE(EnabledPair, TracedCall)->UseRealTime();
BENCHMARK_TEMPLATE(EnabledPair, TwoLines)->UseRealTime();

[[gnu::noinline]] void DisabledTracedCall() {
    TRACE_FUNCTION(Dbg, TracedName);
    benchmark::ClobberMemory();
}

void DisabledTrace(benchmark::State& state) {
    for (auto _ : state) DisabledTracedCall();
    ReportEach(state, 1);
}
BENCHMARK(DisabledTrace);

void SeverityTest(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(IsLogEnabled(LogSeverity::Dbg));
    ReportEach(state, 1);
}
BENCHMARK(SeverityTest);

}  // namespace

int main(int argc, char** argv) {
    setenv("GS_Logger_MaxSeverity", "INFO", 1);
    setenv("GS_Logger_LogFileSizeThresholdMB", "0", 1);
    GetFileLogger(ProductFile().u16string(), {});
    WriteLine(&argc);
    SampleLine() = Benchmarks::Contents(ProductFile());
    std::filesystem::resize_file(ProductFile(), 0);

    return Benchmarks::RunBenchmarks(argc, argv,
                                     {{"DisabledStatement", "TickReadAndAtomicLoad", 1.1},
                                      {"EnabledLine/real_time/threads:1", "BareWrite/real_time/threads:1", 1.3},
                                      {"EnabledLine/real_time/threads:2", "BareWrite/real_time/threads:2", 1.3},
                                      {"EnabledLine/real_time/threads:4", "BareWrite/real_time/threads:4", 1.3},
                                      {"EnabledLine/real_time/threads:1", "SpdlogLine/real_time/threads:1", 0.5},
                                      {"EnabledLine/real_time/threads:2", "SpdlogLine/real_time/threads:2", 0.5},
                                      {"EnabledLine/real_time/threads:4", "SpdlogLine/real_time/threads:4", 0.5},
                                      {"EnabledPair<TracedCall>/real_time", "EnabledPair<TwoLines>/real_time", 1.1},
                                      {"DisabledTrace", "SeverityTest"}});
}
