// Repeating timers of libevent.
#include <event2/event.h>

#include <memory>
#include <thread>

#include "Peers/TimerRounds.h"

namespace {

struct BaseEnd {
    void operator()(event_base* base) const { event_base_free(base); }
};
struct EventEnd {
    void operator()(event* timer) const { event_free(timer); }
};

class RepeatingTimers {
public:
    explicit RepeatingTimers(std::size_t count) : base_(event_base_new()) {
        const timeval millisecond{0, 1000};
        const auto onTimer = [](evutil_socket_t, short, void* fired) { ++*static_cast<std::size_t*>(fired); };
        for (std::size_t i = 0; i < count; ++i) {
            timers_.emplace_back(event_new(base_.get(), -1, EV_PERSIST, onTimer, &fired_));
            event_add(timers_.back().get(), &millisecond);
        }
        // Events that fire in one turn are armed again for one moment: from now on they are due together.
        std::this_thread::sleep_for(std::chrono::milliseconds{50});
        RunRound();
    }
    RepeatingTimers(const RepeatingTimers&) = delete;
    RepeatingTimers& operator=(const RepeatingTimers&) = delete;

    std::size_t RunRound() {
        fired_ = 0;
        while (fired_ == 0) event_base_loop(base_.get(), EVLOOP_ONCE | EVLOOP_NONBLOCK);
        return fired_;
    }

private:
    const std::unique_ptr<event_base, BaseEnd> base_;
    std::vector<std::unique_ptr<event, EventEnd>> timers_;
    std::size_t fired_ = 0;
};

void LibeventAllDue(benchmark::State& state) {
    Benchmarks::MeasureRounds<RepeatingTimers>(state);
}
BENCHMARK(LibeventAllDue)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
