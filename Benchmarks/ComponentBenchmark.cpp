// The creation of objects by class id, and the cost of successes and failures.
#include <stdexcept>

#include "BenchmarkSupport.h"
#include "Common/Failures/CodeOfCall.h"
#include "Common/Failures/MethodEdge.h"
#include "Subsystems/ActionManager/ActionManager.h"
#include "Subsystems/ActionManager/DefaultTriggerStrategy.h"
#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"

namespace {

using namespace Harbor;
using namespace DataCollection;
using ActionManagement::ActionManager;
using ActionManagement::ActionManagerClassId;
using Benchmarks::ReportEach;

// The classes of the module.
const ClassRegistrar ActionManagerClass(ActionManagerClassId, &CComponentObject<ActionManager>::CreateInstance);
const ClassRegistrar ScopeItemUpdateStrategyClass(ScopeItemUpdateStrategyClassId,
                                                  &CComponentObject<ScopeItemUpdateStrategy>::CreateInstance);
const ClassRegistrar DefaultTriggerStrategyClass(DefaultTriggerStrategyClassId,
                                                 &CComponentObject<DefaultTriggerStrategy>::CreateInstance);

void CreateInstanceAndRelease(benchmark::State& state) {
    IComponentsModule& module = ComponentsModule::Instance();
    for (auto _ : state) {
        ITriggerStrategy* strategy = nullptr;
        ThrowIfFailed(module.CreateInstance(&DefaultTriggerStrategyClassId, &ITriggerStrategy::Id,
                                            reinterpret_cast<void**>(&strategy)));
        strategy->Release();
    }
    ReportEach(state, 1);
}
BENCHMARK(CreateInstanceAndRelease);

// Has the size of the smallest component.
class CountedObject {
public:
    static CountedObject* Create() { return std::make_unique<CountedObject>().release(); }
    virtual ~CountedObject() = default;
    virtual void Release() {
        if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) const std::unique_ptr<CountedObject> last(this);
    }

private:
    std::atomic<std::uint32_t> references_{1};
    void* payload_ = nullptr;
};
static_assert(sizeof(CountedObject) == sizeof(CComponentObject<DefaultTriggerStrategy>));

void MapLookupAndHeapObject(benchmark::State& state) {
    const auto less = [](const GUID& a, const GUID& b) { return std::memcmp(&a, &b, sizeof(GUID)) < 0; };
    std::map<GUID, CountedObject* (*)(), decltype(less)> classes(less);
    for (const GUID& id : {ActionManagerClassId, ScopeItemUpdateStrategyClassId, DefaultTriggerStrategyClassId}) {
        classes.emplace(id, &CountedObject::Create);
    }
    for (auto _ : state) {
        CountedObject* object = classes.find(DefaultTriggerStrategyClassId)->second();
        benchmark::DoNotOptimize(object);
        object->Release();
    }
    ReportEach(state, 1);
}
BENCHMARK(MapLookupAndHeapObject);

HRESULT Succeed() {
    return S_OK;
}
// Called through a pointer that the compiler cannot resolve.
HRESULT (*volatile succeed)() = &Succeed;

void HResOfSuccess(benchmark::State& state) {
    for (auto _ : state) {
        const HRES result = succeed();
        benchmark::DoNotOptimize(result.Code());
    }
    ReportEach(state, 1);
}
BENCHMARK(HResOfSuccess);

void BareTestOfSuccess(benchmark::State& state) {
    for (auto _ : state) {
        const HRESULT code = succeed();
        if (code < 0) throw std::runtime_error("a success failed");
        benchmark::DoNotOptimize(code);
    }
    ReportEach(state, 1);
}
BENCHMARK(BareTestOfSuccess);

// A failing method and its caller: the throw, the log line, the text set in the thread's error object and taken by the
// caller. No logger is registered, so the line is formatted and discarded.
HRESULT FailAtEdge() {
    return MethodEdge(TRACED_METHOD(Dbg, "Benchmarks::FailAtEdge"), []() -> HRESULT { ThrowError(E_FAIL); });
}

HRESULT FailWithoutLine() {
    return CodeOfCall([]() -> HRESULT { ThrowError(E_FAIL); });
}

template <HRESULT (*Call)()>
void FailedCall(benchmark::State& state) {
    for (auto _ : state) {
        const HRES code = HRES::Unchecked(Call());
        if (!code.ErrorInfo()) state.SkipWithError("the failure has no words");
    }
    ReportEach(state, 1);
}
BENCHMARK_TEMPLATE(FailedCall, FailAtEdge);
BENCHMARK_TEMPLATE(FailedCall, FailWithoutLine);

[[gnu::noinline]] void Throw() {
    throw std::runtime_error("failed");
}

void BareThrowAndCatch(benchmark::State& state) {
    for (auto _ : state) {
        try {
            Throw();
        } catch (const std::exception& failure) {
            benchmark::DoNotOptimize(failure.what());
        }
    }
    ReportEach(state, 1);
}
BENCHMARK(BareThrowAndCatch);

}  // namespace

int main(int argc, char** argv) {
    return Benchmarks::RunBenchmarks(argc, argv,
                                     {{"CreateInstanceAndRelease", "MapLookupAndHeapObject", 1.5},
                                      {"HResOfSuccess", "BareTestOfSuccess"},
                                      {"FailedCall<FailAtEdge>", "BareThrowAndCatch", 3},
                                      {"FailedCall<FailWithoutLine>", "BareThrowAndCatch"}});
}
