// Repeating timers of Asio.
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include "Peers/TimerRounds.h"

namespace {

using boost::asio::steady_timer;

class RepeatingTimers {
public:
    explicit RepeatingTimers(std::size_t count) {
        const auto firstRun = steady_timer::clock_type::now() + interval_;
        timers_.reserve(count);
        for (std::size_t i = 0; i < count; ++i) Arm(timers_.emplace_back(context_, firstRun));
    }

    // Each timer is armed relative to the first moment, so all remain due together, and one turn fires them all.
    std::size_t RunRound() {
        fired_ = 0;
        context_.restart();
        context_.run();
        return fired_;
    }

private:
    void Arm(steady_timer& timer) {
        timer.async_wait([this, &timer](const boost::system::error_code&) {
            timer.expires_at(timer.expiry() + interval_);
            Arm(timer);
            if (++fired_ == timers_.size()) context_.stop();
        });
    }

    static constexpr std::chrono::milliseconds interval_{1};
    boost::asio::io_context context_{1};
    std::vector<steady_timer> timers_;
    std::size_t fired_ = 0;
};

void AsioAllDue(benchmark::State& state) {
    Benchmarks::MeasureRounds<RepeatingTimers>(state);
}
BENCHMARK(AsioAllDue)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
