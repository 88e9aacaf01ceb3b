// Measures the timers of a peer.
#pragma once

#include "BenchmarkSupport.h"

namespace Benchmarks {

// `Timers` is constructed with a number of repeating timers, which are all due at one moment and armed again for one
// moment. Its RunRound lets them fire and returns how many fired.
template <class Timers>
void MeasureRounds(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    Timers timers(count);
    for (auto _ : state) {
        if (timers.RunRound() != count) state.SkipWithError("not every timer fired once");
    }
    ReportEach(state, count);
}

}  // namespace Benchmarks
