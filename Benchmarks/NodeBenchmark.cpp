// Trees of nodes: look-up by name, dump, and the comparison of two trees.
#include <unordered_map>

#include "BenchmarkSupport.h"
#include "Common/Nodes/CNodeSerializer.h"
#include "Common/Nodes/NodeDump.h"
#include "ItemTree.h"
#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"

namespace {

using namespace Harbor;
using namespace DataCollection;
using Benchmarks::ItemName;
using Benchmarks::MakeItemTree;
using Benchmarks::ReportEach;

// Returns the names in a scattered order, repeatedly.
class Names {
public:
    explicit Names(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) names_.push_back(ItemName(i));
    }
    const WideString& Next() { return names_[at_ = (at_ + stride_) % names_.size()]; }
    const std::vector<WideString>& All() const { return names_; }

private:
    static constexpr std::size_t stride_ = 7919;  // a prime, so that every name is returned
    std::vector<WideString> names_;
    std::size_t at_ = 0;
};

void ChildByName(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const ACNode parent = MakeItemTree(u"Parent", count);
    Names names(count);
    for (auto _ : state) benchmark::DoNotOptimize(parent.GetChild(names.Next().c_str()).Handle());
    ReportEach(state, 1);
}
BENCHMARK(ChildByName)->Arg(10)->Arg(1'000)->Arg(100'000);

void HashMapFind(benchmark::State& state) {
    Names names(static_cast<std::size_t>(state.range(0)));
    std::unordered_map<std::u16string_view, const WideString*> map;
    for (const WideString& name : names.All()) map.emplace(name, &name);
    for (auto _ : state) benchmark::DoNotOptimize(map.find(names.Next())->second);
    ReportEach(state, 1);
}
BENCHMARK(HashMapFind)->Arg(10)->Arg(1'000)->Arg(100'000);

std::string TextOf(const ACNode& node) {
    const AcnHandle handle = node.Handle();
    return NodesToText(&handle, 1, 0, AcnWholeTree);
}

// Runs `dump` on a tree. The rate counts the bytes of the store's text, in UTF-8.
template <class Dump>
void MeasureDump(benchmark::State& state, Dump dump) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const ACNode tree = MakeItemTree(u"Root", count);
    const auto bytes = static_cast<std::int64_t>(TextOf(tree).size());
    benchmark::DoNotOptimize(dump(tree).size());  // allocates the memory in advance
    for (auto _ : state) benchmark::DoNotOptimize(dump(tree).size());
    state.SetBytesProcessed(bytes * state.iterations());
    ReportEach(state, count);
}

void DumpToText(benchmark::State& state) {
    MeasureDump(state, TextOf);
}
BENCHMARK(DumpToText)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

// The dump as a log statement inserts it, in 16-bit text.
void DumpForLog(benchmark::State& state) {
    MeasureDump(state, [](const ACNode& tree) { return DumpNode(ACNodeLogView(tree, DumpDepth::WholeTree)); });
}
BENCHMARK(DumpForLog)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

ACNode MakeConfiguration(std::size_t items) {
    ACNode root;
    root.Create(u"Configuration", nullptr);
    ThrowIfFailed(AcnAppendChild(root.Handle(), MakeItemTree(u"ScopeItems", items).Handle()));
    return root;
}

void CompareEqualItems(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const ACNode before = MakeConfiguration(count);
    const ACNode after = MakeConfiguration(count);
    const auto strategy = Create<ScopeItemUpdateStrategy, ITriggerStrategy>();
    for (auto _ : state) {
        const HRESULT answer = strategy->OnConfigurationUpdate(before.Handle(), after.Handle());
        if (answer != S_FALSE) state.SkipWithError("equal items were found different");
    }
    ReportEach(state, count);
}
BENCHMARK(CompareEqualItems)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    return Benchmarks::RunBenchmarks(argc, argv,
                                     {{"ChildByName/10", "HashMapFind/10"},
                                      {"ChildByName/1000", "HashMapFind/1000"},
                                      {"ChildByName/100000", "HashMapFind/100000"},
                                      {"ChildByName/100000", "ChildByName/1000"},
                                      {"DumpToText/100000", "DumpToText/1000"},
                                      {"DumpToText/100000", "PugixmlPrint/100000"},
                                      {"DumpForLog/100000", "PugixmlPrint/100000"},
                                      {"CompareEqualItems/10000", "CompareEqualItems/1000"},
                                      {"CompareEqualItems/100000", "CompareEqualItems/1000"}});
}
