// Runs code with its threads under a controlled scheduler, so that every interleaving has a number and can be run
// again.
//
// A program that links this library has the threads, locks, condition variables, sleeps and clocks of the platform
// layer replaced. In a run one thread runs at a time. At each call of such a function, and at each Point, the scheduler
// chooses the thread that runs next; all choices come from the seed of the run. Outside a run the functions do what
// they always do.
//
//     const auto failure = Interleaving::Explore(1000, [] {
//         Counter counter;                                        // the code under test, with locks of the layer
//         {
//             const Interleaving::RunThread one([&] { counter.Add(); }), two([&] { counter.Add(); });
//         }                                                       // a RunThread is joined at its end
//         Interleaving::Require(counter.Value() == 2, "no addition is lost");
//     });
//     EXPECT_FALSE(failure) << *failure;
//
// What is explored. A switch is possible before a lock is taken, after it is released, at waits and wakes, at the start
// and the end of threads, and at each Point. Between two such places a thread runs undisturbed: a fault that needs a
// switch between two atomic operations shows only if there is a Point. A lock that is released goes to any thread that
// wants it, also to the one that released it.
//
// Which schedules. Seed 0 never switches while a thread can go on. A third of the others choose uniformly; a third stay
// with the running thread in most cases; a third follow random priorities, which change at a few random steps
// (probabilistic concurrency testing: a fault that needs d ordered switches is found with a known probability). With
// priorities, a thread that sleeps for no time gets the lowest priority, since it only yields to the others.
//
// Time. The clocks do not advance while a thread can run. When all wait, time advances to the nearest deadline. A
// thread that sleeps for no time while all others wait lets a millisecond pass.
//
// What is reported, with the seed and the last steps before it:
// - a promise that isn't kept (Require);
// - a deadlock: all threads wait and there is no deadline;
// - a run of more steps than StepLimit: threads that keep each other busy for ever;
// - a misuse: a lock that is acquired twice, released by another thread or held at a thread's end, a thread handle that
// is
//   closed twice or never, an exception that leaves a thread;
// - a fault that ends the process (a signal, a sanitizer's report): to standard error.
// The threads of a failed run remain stopped for ever, in the middle of the code under test, and keep their locks. A
// program should report and end.
//
// Replay. The same seed takes the same choices as long as the code takes the same steps. Code whose steps depend on
// addresses, on real time or on threads outside the layer is not covered. What the process builds once, at the first
// use, adds steps to its first run: ExpectPromises.h runs seed 0 before any other.
//
// Threads are real ones, taken from a pool and handed the turn by semaphores, not fibers: the code under test keeps
// state for each thread (its last error, its exceptions in flight, its mark on a lock), which fibers on one thread
// would share. They keep to one processor, where the turn changes hands in the shortest time. Under the thread
// sanitizer the changes of the turn order all accesses, so no data race shows here.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace Interleaving {

inline constexpr std::size_t StepLimit = 20'000;

struct Failure {
    std::uint64_t seed;
    std::string what;
    // The last steps: their number, the thread, what it does, to which object (numbered as they come), and where, as
    // addr2line takes it.
    std::string trace;
};
std::ostream& operator<<(std::ostream& stream, const Failure& failure);

// Runs the scenario on the first thread of a run. The run ends when all its threads have ended. Not from inside a run.
[[nodiscard]] std::optional<Failure> Run(std::uint64_t seed, const std::function<void()>& scenario);

// Runs the seeds from 0 on, up to the first failure.
[[nodiscard]] std::optional<Failure> Explore(std::uint64_t seedCount, const std::function<void()>& scenario);

// What follows is for the threads of a run.

// Lets the scheduler switch here. The text shows in the trace and must live as long as the program, as all texts here.
void Point(const char* what);

// Waits until the condition is true. It is asked on any thread at each choice, and must not call the layer.
void WaitUntil(const char* what, const std::function<bool()>& condition);

// One of the numbers below the bound, by the seed.
[[nodiscard]] std::uint64_t Choose(std::uint64_t bound);

// Ends the run with a failure unless the promise was kept.
void Require(bool kept, const char* promise);

// One more thread of the run.
class RunThread {
public:
    explicit RunThread(std::function<void()> body);
    RunThread(const RunThread&) = delete;
    RunThread& operator=(const RunThread&) = delete;
    ~RunThread();  // waits for its end

private:
    struct Agent* agent_;
};

}  // namespace Interleaving
