// One cycle of the manager, called without a worker and with the benchmark's own clock, with nothing due and with
// everything due, and the cost of a registration in time and memory.
#include <malloc.h>

#include "BenchmarkSupport.h"
#include "CountedAllocations.h"
#include "LocalComponent.h"
#include "Subsystems/ActionManager/ActionManager.h"
#include "Subsystems/ActionManager/Clock.h"

namespace {

using namespace Harbor;
using namespace DataCollection;
using namespace DataCollection::ActionManagement;
using Benchmarks::ReportEach;

constexpr std::chrono::seconds Interval{3600};
constexpr TimedActionSettings EveryInterval{0, false, static_cast<std::uint32_t>(Interval.count()),
                                            TimedActionType::Repeat, 0};

std::uint64_t delivered = 0;

class Listener final : public Benchmarks::Local<IActionListener> {
public:
    HRESULT OnActionTriggered(IActionSubscription*, IAction*) override {
        ++delivered;
        return S_OK;
    }
};

// A manager with regular actions, each with its own started subscription and listener.
class Registrations {
public:
    explicit Registrations(std::size_t count) : listeners_(count), subscriptions_(count) {
        CComponentObject<ActionManager>* created = nullptr;
        ThrowIfFailed(CComponentObject<ActionManager>::CreateObject(&created));
        manager_ = ComponentPtr<CComponentObject<ActionManager>>::Attach(created);
    }

    void RegisterAll() {
        for (std::size_t i = 0; i < listeners_.size(); ++i) subscriptions_[i] = Register(listeners_[i]);
        now_ = CurrentTime();
    }

    ComponentPtr<IActionSubscription> Register(Listener& listener) {
        ComponentPtr<IActionSubscription> subscription;
        ThrowIfFailed(manager_->SubscribeRegularAction(&listener, &EveryInterval, subscription.Address()));
        ThrowIfFailed(subscription->Start());
        return subscription;
    }

    void UnsubscribeAll() {
        for (auto& subscription : subscriptions_) {
            ThrowIfFailed(subscription->Unsubscribe());
            subscription.Reset();
        }
    }

    void Cycle() { manager_->OnTimerEvent(now_); }
    void MakeAllDue() { now_ += Interval; }
    // A subscription detaches in one cycle and is removed from the registry in the next.
    void LetDetachedGo() {
        Cycle();
        Cycle();
    }

    std::size_t Size() const { return listeners_.size(); }

private:
    std::vector<Listener> listeners_;
    ComponentPtr<CComponentObject<ActionManager>> manager_;
    std::vector<ComponentPtr<IActionSubscription>> subscriptions_;
    TimePoint now_;
};

// Kept between runs, since a million registrations take a while.
std::unique_ptr<Registrations> standing;

Registrations& Standing(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    if (standing == nullptr || standing->Size() != count) {
        standing.reset();
        standing = std::make_unique<Registrations>(count);
        standing->RegisterAll();
    }
    return *standing;
}

// The fewest allocations of three cycles: now and then a cycle also reads the log's settings, which allocates and is
// not the cycle's own work.
std::uint64_t AllocationsOfCycle(Registrations& registrations) {
    std::uint64_t fewest = ~std::uint64_t{0};
    for (int i = 0; i < 3; ++i) {
        const std::uint64_t before = Benchmarks::AllocationsOfThisThread();
        registrations.Cycle();
        fewest = std::min(fewest, Benchmarks::AllocationsOfThisThread() - before);
    }
    return fewest;
}

// All have run once, so that each check computes the current interval.
void CycleNothingDue(benchmark::State& state) {
    Registrations& registrations = Standing(state);
    registrations.MakeAllDue();
    registrations.Cycle();
    const std::uint64_t before = delivered;
    for (auto _ : state) registrations.Cycle();
    if (delivered != before) state.SkipWithError("something was due");
    const std::uint64_t allocations = AllocationsOfCycle(registrations);
    if (allocations != 0) state.SkipWithError("the cycle allocates");
    state.counters["allocs"] = static_cast<double>(allocations);
    ReportEach(state, registrations.Size());
}
BENCHMARK(CycleNothingDue)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);

void BareLoop(benchmark::State& state) {
    const std::vector<TimePoint> times(static_cast<std::size_t>(state.range(0)), CurrentTime() + Interval);
    for (auto _ : state) {
        TimePoint now = CurrentTime();
        benchmark::DoNotOptimize(now);
        benchmark::DoNotOptimize(std::count_if(times.begin(), times.end(), [&](auto time) { return time <= now; }));
    }
    ReportEach(state, times.size());
}
BENCHMARK(BareLoop)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);

void CycleAllDue(benchmark::State& state) {
    Registrations& registrations = Standing(state);
    for (auto _ : state) {
        registrations.MakeAllDue();
        const std::uint64_t before = delivered;
        registrations.Cycle();
        if (delivered - before != registrations.Size()) state.SkipWithError("not every listener was called once");
    }
    ReportEach(state, registrations.Size());
}
BENCHMARK(CycleAllDue)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

// Registering and unsubscribing, while other registrations exist. The cycles that remove what has ended are not timed.
void RegisterAndUnsubscribeOne(benchmark::State& state) {
    constexpr int mostDetached = 1000;
    Registrations& registrations = Standing(state);
    Listener listener;
    int detached = 0;
    for (auto _ : state) {
        auto subscription = registrations.Register(listener);
        ThrowIfFailed(subscription->Unsubscribe());
        if (++detached < mostDetached) continue;
        state.PauseTiming();
        registrations.LetDetachedGo();
        detached = 0;
        state.ResumeTiming();
    }
    registrations.LetDetachedGo();
    ReportEach(state, 1);
}
BENCHMARK(RegisterAndUnsubscribeOne)->Arg(1'000)->Arg(100'000);

// From an empty registry to an empty registry.
void RegisterAndUnsubscribeAll(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        Registrations registrations(count);
        registrations.RegisterAll();
        registrations.UnsubscribeAll();
        registrations.LetDetachedGo();
    }
    ReportEach(state, count);
}
BENCHMARK(RegisterAndUnsubscribeAll)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

// The bytes of the heap in use, with its own overhead. The listener belongs to the client and is not counted.
std::size_t HeapInUse() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

void MemoryOfRegistration(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    std::size_t bytes = 0;
    for (auto _ : state) {
        Registrations registrations(count);
        const std::size_t before = HeapInUse();
        registrations.RegisterAll();
        registrations.Cycle();
        bytes = HeapInUse() - before;
    }
    state.counters["bytes"] = static_cast<double>(bytes) / static_cast<double>(count);
}
BENCHMARK(MemoryOfRegistration)->Arg(1'000)->Arg(100'000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    std::vector<Benchmarks::Comparison> comparisons{
        {"CycleNothingDue/1000", "BareLoop/1000"},
        {"CycleNothingDue/100000", "BareLoop/100000"},
        {"CycleNothingDue/1000000", "BareLoop/1000000"},
        {"RegisterAndUnsubscribeOne/100000", "RegisterAndUnsubscribeOne/1000"},
        {"RegisterAndUnsubscribeAll/100000", "RegisterAndUnsubscribeAll/1000"}};
    for (const std::string count : {"/100000", "/1000000"}) {
        comparisons.push_back({"CycleAllDue" + count, "LibuvAllDue" + count, 1});
        comparisons.push_back({"CycleAllDue" + count, "AsioAllDue" + count});
        comparisons.push_back({"CycleAllDue" + count, "LibeventAllDue" + count});
    }
    const int code = Benchmarks::RunBenchmarks(argc, argv, std::move(comparisons));
    // Its objects log, and the log is destroyed before the program's own variables.
    standing.reset();
    return code;
}
