// Prints the tree of a dump with pugixml.
#include <pugixml.hpp>

#include "BenchmarkSupport.h"
#include "Common/Nodes/CNodeSerializer.h"
#include "ItemTree.h"

namespace {

class TextWriter final : public pugi::xml_writer {
public:
    void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }
    std::string text;
};

std::string Print(const pugi::xml_document& document) {
    TextWriter writer;
    document.save(writer, "  ", pugi::format_indent | pugi::format_no_declaration);
    return std::move(writer.text);
}

void PugixmlPrint(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const Harbor::ACNode tree = Benchmarks::MakeItemTree(u"Root", count);
    const AcnHandle handle = tree.Handle();
    pugi::xml_document document;
    if (!document.load_string(Harbor::NodesToText(&handle, 1, 0, AcnWholeTree).c_str())) {
        state.SkipWithError("the dump is not well-formed");
    }
    const auto bytes = static_cast<std::int64_t>(Print(document).size());
    for (auto _ : state) benchmark::DoNotOptimize(Print(document).size());
    state.SetBytesProcessed(bytes * state.iterations());
    Benchmarks::ReportEach(state, count);
}
BENCHMARK(PugixmlPrint)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace
