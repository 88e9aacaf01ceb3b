// Repeating timers of libuv.
#include <uv.h>

#include "Peers/TimerRounds.h"

namespace {

class RepeatingTimers {
public:
    explicit RepeatingTimers(std::size_t count) : timers_(count) {
        uv_loop_init(&loop_);
        for (uv_timer_t& timer : timers_) {
            uv_timer_init(&loop_, &timer);
            timer.data = this;
            uv_timer_start(
                &timer, [](uv_timer_t* fired) { ++static_cast<RepeatingTimers*>(fired->data)->fired_; }, 1, 1);
        }
    }
    ~RepeatingTimers() {
        for (uv_timer_t& timer : timers_) uv_close(reinterpret_cast<uv_handle_t*>(&timer), nullptr);
        uv_run(&loop_, UV_RUN_DEFAULT);
        uv_loop_close(&loop_);
    }
    RepeatingTimers(const RepeatingTimers&) = delete;
    RepeatingTimers& operator=(const RepeatingTimers&) = delete;

    // All were armed at one moment of the loop's clock, so in one turn of the loop all or none are due.
    std::size_t RunRound() {
        fired_ = 0;
        while (fired_ == 0) uv_run(&loop_, UV_RUN_NOWAIT);
        return fired_;
    }

private:
    uv_loop_t loop_;
    std::vector<uv_timer_t> timers_;
    std::size_t fired_ = 0;
};

void LibuvAllDue(benchmark::State& state) {
    Benchmarks::MeasureRounds<RepeatingTimers>(state);
}
BENCHMARK(LibuvAllDue)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
