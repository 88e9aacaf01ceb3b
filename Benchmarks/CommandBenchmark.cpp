// The path of a command: from the configuration service's callback through the queue to the mark on the action.
#include <thread>

#include "BenchmarkSupport.h"
#include "LocalComponent.h"
#include "ModuleBroker/Registration.h"
#include "NodeFabric/Authoring.h"
#include "Subsystems/ActionManager/ActionManager.h"
#include "Subsystems/ActionManager/Clock.h"

namespace {

using namespace Harbor;
using namespace DataCollection;
using namespace DataCollection::ActionManagement;
using Benchmarks::Local;
using Benchmarks::ReportEach;

constexpr WideChar CommandPath[] = u"\\Commands\\ManagedObjectsDataCollectionCommand\\Archive\\Nightly";
constexpr std::uint32_t ChangesMask = 4;
constexpr std::size_t NodesOfReport = 100;
constexpr std::size_t ReportsOfPoster = 200;
constexpr std::size_t RecordsOfPoster = NodesOfReport * ReportsOfPoster;

class Watch final : public Local<IACModifySubscription> {
    HRESULT Start() override { return S_OK; }
};

// A service with one watch.
class Service final : public Local<IACConfigService> {
public:
    explicit Service(Watch& watch) : watch_(watch) {}
    HRESULT AddSubscription(AcnHandle, AcnHandle, IACModifyCallback*, IACModifySubscription** subscription) override {
        watch_.AddRef();
        *subscription = &watch_;
        return S_OK;
    }
    HRESULT RemoveSubscription(IACModifySubscription*) override { return S_OK; }

private:
    Watch& watch_;
};

class Listener final : public Local<IActionListener> {
public:
    HRESULT OnActionTriggered(IActionSubscription*, IAction*) override {
        ++calls;
        return S_OK;
    }
    std::uint64_t calls = 0;
};

ACNode MakeCommandNode() {
    ACNode node;
    node.Create(u"Nightly", u"Command");
    node.SetText(u"Command", u"Start", MeasureText);
    node.SetText(u"User", u"Operator", MeasureText);
    return node;
}

ACNode MakeNotification() {
    ACNode notification;
    notification.Create(u"Notification", nullptr);
    notification.SetText(u"ModifiedNodePath", CommandPath, MeasureText);
    notification.SetInt64(u"ChangesMask", ChangesMask);
    ThrowIfFailed(AcnAppendChild(notification.Handle(), MakeCommandNode().Handle()));
    return notification;
}

// One report, read several times. Each poster has its own, since each report of a service has its own nodes.
class Report final : public Local<IACNodeModifyEnum> {
public:
    Report() { std::generate_n(std::back_inserter(notifications_), NodesOfReport, MakeNotification); }
    HRESULT GetNodeEnumerator(IACNodeEnumerator** out) override {
        walk_.AddRef();
        *out = &walk_;
        return S_OK;
    }

private:
    class Walk final : public Local<IACNodeEnumerator> {
    public:
        explicit Walk(const std::vector<ACNode>& nodes) : nodes_(nodes) {}
        HRESULT Reset() override {
            at_ = 0;
            return S_OK;
        }
        HRESULT Next(AcnHandle* node) override {
            return at_ == nodes_.size() ? S_FALSE : AcnDuplicateNodeHandle(nodes_[at_++].Handle(), node);
        }

    private:
        const std::vector<ACNode>& nodes_;
        std::size_t at_ = 0;
    };

    std::vector<ACNode> notifications_;
    Walk walk_{notifications_};
};

// One cycle: `posters` threads call `post`, each with its number, then `drain` runs.
template <class Post, class Drain>
void RunPosters(std::size_t posters, Post post, Drain drain) {
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < posters; ++i) threads.emplace_back(post, i);
    }
    drain();
}

template <class Post, class Drain>
void MeasurePosters(benchmark::State& state, Post post, Drain drain) {
    const auto posters = static_cast<std::size_t>(state.range(0));
    RunPosters(posters, post, drain);  // allocates the queue's memory in advance
    for (auto _ : state) RunPosters(posters, post, drain);
    const std::size_t records = posters * RecordsOfPoster;
    state.SetItemsProcessed(static_cast<std::int64_t>(records) * state.iterations());
    ReportEach(state, records);
}

void FromCallbackToMark(benchmark::State& state) {
    Watch watch;
    Service service(watch);
    ThrowIfFailed(MBSetNamedInstance(ConfigServiceInstanceName, &service));
    CComponentObject<ActionManager>* created = nullptr;
    ThrowIfFailed(CComponentObject<ActionManager>::CreateObject(&created));
    const auto manager = ComponentPtr<CComponentObject<ActionManager>>::Attach(created);
    Listener listener;
    const ForcedActionConfig config{u"Nightly", u"Archive", false};
    ComponentPtr<IActionSubscription> subscription;
    ThrowIfFailed(manager->SubscribeForcedAction(&listener, &config, subscription.Address()));
    ThrowIfFailed(subscription->Start());
    std::vector<Report> reports(static_cast<std::size_t>(state.range(0)));

    MeasurePosters(
        state,
        [&](std::size_t poster) {
            for (std::size_t i = 0; i < ReportsOfPoster; ++i) manager->OnTriggered(&watch, 0, &reports[poster]);
        },
        [&] { manager->OnTimerEvent(CurrentTime()); });
    if (listener.calls == 0) state.SkipWithError("no command arrived");
    ThrowIfFailed(MBSetNamedInstance(ConfigServiceInstanceName, nullptr));
}
BENCHMARK(FromCallbackToMark)->Arg(1)->Arg(4)->UseRealTime()->Unit(benchmark::kMillisecond);

// The part of that path that belongs to the node store: reading the reports and cloning their nodes. The clones live
// until the cycle, as in the queue: more memory than the caches hold, released by another thread.
void ReadAndClone(benchmark::State& state) {
    std::vector<Report> reports(static_cast<std::size_t>(state.range(0)));
    std::vector<std::vector<ModifiedNode>> records(reports.size());
    for (auto& ofPoster : records) ofPoster.reserve(RecordsOfPoster);
    MeasurePosters(
        state,
        [&](std::size_t poster) {
            for (std::size_t i = 0; i < ReportsOfPoster; ++i) {
                ForEachModifiedNode(&reports[poster], [&](ModifiedNode& record) {
                    WideString command;
                    benchmark::DoNotOptimize(record.node.TryGetText(u"Command", command));
                    record.node = record.node.Clone(AcnWholeTree, 0);
                    records[poster].push_back(std::move(record));
                });
            }
        },
        [&] {
            for (auto& ofPoster : records) ofPoster.clear();
        });
}
BENCHMARK(ReadAndClone)->Arg(1)->Arg(4)->UseRealTime()->Unit(benchmark::kMillisecond);

void ProductQueue(benchmark::State& state) {
    ConfigurationUpdateQueue queue;
    MeasurePosters(
        state,
        [&](std::size_t) {
            for (std::size_t i = 0; i < RecordsOfPoster; ++i) {
                ModifiedNode record;
                record.path = CommandPath;
                record.mask = ChangesMask;
                queue.Post({.key = nullptr, .update = std::move(record)});
            }
        },
        [&] {
            while (const auto queued = queue.TakeOldest()) benchmark::DoNotOptimize(queued->update.mask);
        });
}
BENCHMARK(ProductQueue)->Arg(1)->Arg(4)->UseRealTime()->Unit(benchmark::kMillisecond);

void MutexAndDeque(benchmark::State& state) {
    struct Record {
        void* key = nullptr;
        WideString path;
        std::uint32_t mask = 0;
        void* node = nullptr;
    };
    std::mutex lock;
    std::deque<Record> records;
    MeasurePosters(
        state,
        [&](std::size_t) {
            for (std::size_t i = 0; i < RecordsOfPoster; ++i) {
                Record record{nullptr, CommandPath, ChangesMask, nullptr};
                const std::lock_guard guard(lock);
                records.push_back(std::move(record));
            }
        },
        [&] {
            for (;;) {
                const std::lock_guard guard(lock);
                if (records.empty()) return;
                const Record record = std::move(records.front());
                records.pop_front();
                benchmark::DoNotOptimize(record.mask);
            }
        });
}
BENCHMARK(MutexAndDeque)->Arg(1)->Arg(4)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    std::vector<Benchmarks::Comparison> comparisons;
    for (const std::string posters : {"1", "4"}) {
        const std::string road = "FromCallbackToMark/" + posters + "/real_time";
        const std::string floor = "MutexAndDeque/" + posters + "/real_time";
        const std::string store = "ReadAndClone/" + posters + "/real_time";
        comparisons.push_back({"ProductQueue/" + posters + "/real_time", floor, 1.5});
        comparisons.push_back({road, floor, 3, {store}});
    }
    return Benchmarks::RunBenchmarks(argc, argv, std::move(comparisons));
}
