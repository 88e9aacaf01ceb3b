// The scheduler of a run, for the functions that take the place of the platform's.
#pragma once

#include <semaphore.h>

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "Interleaving/Interleaving.h"

namespace Interleaving {

using Nanoseconds = std::int64_t;
inline constexpr Nanoseconds Never = std::numeric_limits<Nanoseconds>::max();
inline constexpr Nanoseconds NanosecondsPerMillisecond = 1'000'000;

class Semaphore {
public:
    Semaphore() noexcept { sem_init(&native_, 0, 0); }
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;
    ~Semaphore() { sem_destroy(&native_); }

    void Post() noexcept { sem_post(&native_); }
    void Wait() noexcept;
    [[nodiscard]] bool WaitFor(int seconds) noexcept;

private:
    sem_t native_;
};

// A thread of the pool, and its part in the run.
struct Agent {
    enum class State { Ready, Waiting, Ended };

    Semaphore turn;
    std::function<void()> job;

    unsigned number = 0;
    State state = State::Ready;
    std::int64_t priority = 0;
    unsigned locksHeld = 0;
    bool handleOpen = true;

    // While it waits:
    const void* awaited = nullptr;                     // who signals this object makes it ready
    const std::function<bool()>* condition = nullptr;  // as does this, once it is true
    Nanoseconds deadline = Never;                      // and this moment
    bool timedOut = false;
};

// What a thread does, for the trace.
struct Step {
    const char* what;
    const void* object;
    const void* place;  // the address that the call returns to
    unsigned agent = 0;
};

class Scheduler {
public:
    static Scheduler& Instance();
    // The calling thread's part in the run; null outside a run.
    static Agent* Self() noexcept;

    std::optional<Failure> Run(std::uint64_t seed, const std::function<void()>& scenario);

    // All below is for the threads of a run.

    // A place where another thread may go on.
    void Point(const Step& step);
    // Waits for a signal, a condition or a moment. Returns false at the moment.
    bool Wait(const Step& step, const void* awaited, Nanoseconds deadline,
              const std::function<bool()>* condition = nullptr);
    void SignalAll(const void* object) noexcept;
    void SignalOne(const void* object) noexcept;
    // As Point; seed 0 and priorities let all others come first from here on.
    void GiveWay(const Step& step);

    Agent& StartThread(const Step& step, std::function<void()> body);
    void Join(const Step& step, Agent& agent);
    void CloseHandle(Agent& agent);
    // Whether the handle is that of a thread of this run.
    [[nodiscard]] Agent* AgentOf(const void* handle) const noexcept;

    [[noreturn]] void Fail(std::string what);
    [[nodiscard]] std::uint64_t Random(std::uint64_t bound);
    [[nodiscard]] Nanoseconds Now() const noexcept { return now_; }
    // The steps up to now, with their seed: for a fault that ends the process.
    [[nodiscard]] Failure Describe(std::string what) const;

private:
    enum class Policy { KeepRunning, Uniform, Sticky, Priorities };

    void Begin(std::uint64_t seed);
    Agent& TakeAgent(std::function<void()> job);
    void Live(Agent& agent);
    void End(Agent& agent);
    void Record(const Step& step);
    Agent& ChooseNext();
    void CollectReady();
    void PassTimeTo(Nanoseconds moment);
    Agent& Pick();
    void HandOver(Agent& from, Agent& to);

    Semaphore done_;
    std::vector<Agent*> idle_;
    std::vector<Agent*> agents_;  // of this run, by number
    std::vector<Agent*> ready_;
    Agent* running_ = nullptr;

    std::mt19937_64 random_;
    std::uint64_t seed_ = 0;
    Policy policy_ = Policy::KeepRunning;
    std::array<std::size_t, 3> changes_{};  // the steps at which the running thread gets the lowest priority
    std::int64_t lowestPriority_ = 0;

    Nanoseconds now_ = 0;
    std::vector<Step> steps_;
    std::optional<Failure> failure_;
};

}  // namespace Interleaving
