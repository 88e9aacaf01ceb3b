// Shared by the benchmark programs: the time of one item, and a table of ratios after the figures.
#pragma once

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <latch>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace Benchmarks {

// Reports the time of one of the `items` that every iteration handles. Ratios compare this figure.
inline void ReportEach(benchmark::State& state, std::size_t items) {
    using benchmark::Counter;
    state.counters["each"] = Counter(static_cast<double>(items),
                                     Counter::kIsIterationInvariantRate | Counter::kAvgThreads | Counter::kInvert);
}

// Reports, when it ends, the processor time in user mode that this thread has spent on an iteration. The rest of the
// time is the kernel's, or a wait.
class UserTime {
public:
    explicit UserTime(benchmark::State& state) : state_(state) {}
    UserTime(const UserTime&) = delete;
    UserTime& operator=(const UserTime&) = delete;
    ~UserTime() {
        state_.counters["user"] = benchmark::Counter((Now() - before_) / static_cast<double>(state_.iterations()),
                                                     benchmark::Counter::kAvgThreads);
    }

private:
    static double Now() {
        rusage used{};
        getrusage(RUSAGE_THREAD, &used);
        return static_cast<double>(used.ru_utime.tv_sec) + static_cast<double>(used.ru_utime.tv_usec) * 1e-6;
    }

    benchmark::State& state_;
    const double before_ = Now();
};

// A line of the table: the time of an item of `measured`, minus those of `apart`, divided by the time of an item of
// `floor`. A goal of 0 means that the ratio has no goal.
struct Comparison {
    std::string measured;
    std::string floor;
    double goal = 0;
    std::vector<std::string> apart = {};
};

// Prints the usual output, and at the end a line for each comparison whose parts have run. Of several repetitions the
// fastest counts.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    explicit RatioReporter(std::vector<Comparison> comparisons)
        : ConsoleReporter(OO_Tabular), comparisons_(std::move(comparisons)) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const auto each = run.counters.find("each");
            if (run.error_occurred || run.run_type != Run::RT_Iteration || each == run.counters.end()) continue;
            const auto known = seconds_.emplace(run.benchmark_name(), each->second.value).first;
            known->second = std::min(known->second, each->second.value);
        }
    }

    void Finalize() override {
        GetOutputStream() << "\n   ratio    goal  of\n" << std::fixed << std::setprecision(2);
        for (const Comparison& comparison : comparisons_) {
            const auto hasRun = [this](const std::string& name) { return seconds_.contains(name); };
            if (hasRun(comparison.measured) && hasRun(comparison.floor) &&
                std::all_of(comparison.apart.begin(), comparison.apart.end(), hasRun)) {
                Print(comparison);
            }
        }
    }

private:
    void Print(const Comparison& comparison) {
        const auto& [measured, floor, goal, apart] = comparison;
        double own = seconds_[measured];
        for (const std::string& part : apart) own -= seconds_[part];
        const double ratio = own / seconds_[floor];
        std::ostream& out = GetOutputStream() << std::setw(8) << ratio << std::setw(8);
        (goal == 0 ? out << "-" : out << goal) << "  " << measured;
        for (const std::string& part : apart) out << " without " << part;
        out << " : " << floor << (goal != 0 && ratio > goal ? "   MISSED" : "") << "\n";
    }

    const std::vector<Comparison> comparisons_;
    std::map<std::string, double> seconds_;
};

// The main function of a program. The log severity is WARN unless the environment sets another. Freed memory remains in
// the process, so that no figure depends on the state in which an earlier benchmark left the allocator. A second thread
// is alive, as in a host: without one the runtime leaves out atomic operations.
inline int RunBenchmarks(int argc, char** argv, std::vector<Comparison> comparisons) {
    setenv("GS_Logger_MaxSeverity", "WARN", 0);
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    RatioReporter reporter(std::move(comparisons));
    std::latch end(1);
    const std::jthread second([&end] { end.wait(); });
    benchmark::RunSpecifiedBenchmarks(&reporter);
    end.count_down();
    benchmark::Shutdown();
    return 0;
}

}  // namespace Benchmarks
