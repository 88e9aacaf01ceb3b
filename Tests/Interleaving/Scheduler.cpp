#include "Interleaving/Scheduler.h"

#include <dlfcn.h>
#include <sched.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>
#include <thread>
#include <utility>

// Of the sanitizers, where the program has one.
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

namespace Interleaving {

namespace {

constexpr int RealSecondsOfARun = 120;  // then a thread hangs outside the layer
constexpr std::size_t StepsShown = 80;

constinit thread_local Agent* self = nullptr;

std::string NameOf(const void* place) {
    Dl_info info{};
    std::ostringstream text;
    if (dladdr(place, &info) == 0) return {};
    const std::string path = info.dli_fname;
    text << path.substr(path.rfind('/') + 1) << "+0x" << std::hex
         << static_cast<const char*>(place) - static_cast<const char*>(info.dli_fbase);
    return text.str();
}

// Whatever ends the process shows where the run stood.
void TellDeath() {
    if (self != nullptr) std::cerr << Scheduler::Instance().Describe("the process ends by a fault") << std::endl;
}

void OnSignal(int number) {
    TellDeath();
    signal(number, SIG_DFL);
    raise(number);
}

void WatchForDeath() {
    if (__sanitizer_set_death_callback != nullptr) {
        __sanitizer_set_death_callback(TellDeath);
    } else {
        signal(SIGSEGV, OnSignal);
    }
    signal(SIGABRT, OnSignal);
}

void KeepToOneProcessor() {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(static_cast<std::size_t>(sched_getcpu()), &processors);
    sched_setaffinity(0, sizeof(processors), &processors);
}

}  // namespace

void Semaphore::Wait() noexcept {
    while (sem_wait(&native_) != 0) continue;
}

bool Semaphore::WaitFor(int seconds) noexcept {
    timespec deadline{};
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += seconds;
    int result = -1;
    while ((result = sem_timedwait(&native_, &deadline)) != 0 && errno == EINTR) continue;
    return result == 0;
}

Scheduler& Scheduler::Instance() {
    // Never ends: the threads of its pool don't.
    static Scheduler& instance = *[] {
        WatchForDeath();
        KeepToOneProcessor();
        return std::make_unique<Scheduler>().release();
    }();
    return instance;
}

Agent* Scheduler::Self() noexcept {
    return self;
}

std::uint64_t Scheduler::Random(std::uint64_t bound) {
    return random_() % bound;
}

std::optional<Failure> Scheduler::Run(std::uint64_t seed, const std::function<void()>& scenario) {
    Begin(seed);
    Agent& first = TakeAgent(scenario);
    first.handleOpen = false;
    running_ = &first;
    first.turn.Post();
    if (!done_.WaitFor(RealSecondsOfARun)) failure_ = Describe("the running thread hangs outside the layer");
    if (!failure_) idle_.insert(idle_.end(), agents_.begin(), agents_.end());
    agents_.clear();
    return std::exchange(failure_, std::nullopt);
}

void Scheduler::Begin(std::uint64_t seed) {
    seed_ = seed;
    random_.seed(seed);
    steps_.clear();
    lowestPriority_ = 0;
    now_ = 0;
    constexpr Policy policies[] = {Policy::Uniform, Policy::Sticky, Policy::Priorities};
    policy_ = seed == 0 ? Policy::KeepRunning : policies[seed % std::size(policies)];
    // A run's length isn't known: the changes lie within the first 16 to 1024 steps, 1 to 3 of them.
    const std::uint64_t range = std::uint64_t{16} << Random(7);
    const std::uint64_t count = 1 + Random(changes_.size());
    changes_.fill(0);
    std::generate_n(changes_.begin(), count, [&] { return 1 + Random(range); });
}

Agent& Scheduler::TakeAgent(std::function<void()> job) {
    if (idle_.empty()) {
        idle_.push_back(std::make_unique<Agent>().release());
        std::thread([this, agent = idle_.back()] { Live(*agent); }).detach();
    }
    Agent& agent = *idle_.back();
    idle_.pop_back();
    agent.job = std::move(job);
    agent.number = static_cast<unsigned>(agents_.size());
    agent.state = Agent::State::Ready;
    agent.priority = static_cast<std::int64_t>(1 + Random(1u << 30));
    agent.locksHeld = 0;
    agent.handleOpen = true;
    agents_.push_back(&agent);
    return agent;
}

void Scheduler::Live(Agent& agent) {
    for (;;) {
        agent.turn.Wait();
        self = &agent;
        try {
            agent.job();
            agent.job = nullptr;
        } catch (const std::exception& exception) {
            Fail(std::string("an exception leaves a thread: ") + exception.what());
        } catch (...) {
            Fail("an exception leaves a thread");
        }
        if (agent.locksHeld != 0) Fail("a thread ends with a lock held");
        self = nullptr;
        End(agent);
    }
}

// Not a thread of the run any more, but still the one that runs.
void Scheduler::End(Agent& agent) {
    Record({"ends", &agent, nullptr, agent.number});
    agent.state = Agent::State::Ended;
    SignalAll(&agent);
    if (std::ranges::any_of(agents_, [](const Agent* one) { return one->state != Agent::State::Ended; })) {
        self = &agent;  // a deadlock of the others is found here
        Agent& next = ChooseNext();
        self = nullptr;
        running_ = &next;
        next.turn.Post();
        return;
    }
    if (std::ranges::any_of(agents_, [](const Agent* one) { return one->handleOpen; })) {
        failure_ = Describe("the handle of a thread was never closed");
    }
    done_.Post();
}

void Scheduler::Record(const Step& step) {
    steps_.push_back(step);
    steps_.back().agent = running_->number;
}

void Scheduler::Point(const Step& step) {
    Record(step);
    if (steps_.size() > StepLimit) Fail("the run takes more steps than the limit");
    if (std::ranges::find(changes_, steps_.size()) != changes_.end()) self->priority = --lowestPriority_;
    HandOver(*self, ChooseNext());
}

void Scheduler::GiveWay(const Step& step) {
    self->priority = --lowestPriority_;
    CollectReady();
    if (ready_.size() == 1) PassTimeTo(now_ + NanosecondsPerMillisecond);
    Point(step);
}

bool Scheduler::Wait(const Step& step, const void* awaited, Nanoseconds deadline,
                     const std::function<bool()>* condition) {
    self->state = Agent::State::Waiting;
    self->awaited = awaited;
    self->condition = condition;
    self->deadline = deadline;
    self->timedOut = false;
    Point(step);
    return !self->timedOut;
}

void Scheduler::SignalAll(const void* object) noexcept {
    for (Agent* const agent : agents_) {
        if (agent->state == Agent::State::Waiting && agent->awaited == object) agent->state = Agent::State::Ready;
    }
}

void Scheduler::SignalOne(const void* object) noexcept {
    ready_.clear();
    std::ranges::copy_if(agents_, std::back_inserter(ready_), [&](const Agent* agent) {
        return agent->state == Agent::State::Waiting && agent->awaited == object;
    });
    if (!ready_.empty()) ready_[Random(ready_.size())]->state = Agent::State::Ready;
}

void Scheduler::HandOver(Agent& from, Agent& to) {
    if (&from == &to) return;
    running_ = &to;
    to.turn.Post();
    from.turn.Wait();
}

Agent& Scheduler::ChooseNext() {
    for (CollectReady(); ready_.empty(); CollectReady()) {
        Nanoseconds nearest = Never;
        for (const Agent* const agent : agents_) {
            if (agent->state == Agent::State::Waiting) nearest = std::min(nearest, agent->deadline);
        }
        if (nearest == Never) Fail("deadlock: all threads wait, and none has a deadline");
        PassTimeTo(nearest);
    }
    return Pick();
}

void Scheduler::CollectReady() {
    ready_.clear();
    for (Agent* const agent : agents_) {
        if (agent->state == Agent::State::Waiting && agent->condition != nullptr && (*agent->condition)()) {
            agent->state = Agent::State::Ready;
        }
        if (agent->state == Agent::State::Ready) ready_.push_back(agent);
    }
}

void Scheduler::PassTimeTo(Nanoseconds moment) {
    now_ = std::max(now_, moment);
    for (Agent* const agent : agents_) {
        if (agent->state != Agent::State::Waiting || agent->deadline > now_) continue;
        agent->state = Agent::State::Ready;
        agent->timedOut = true;
    }
}

Agent& Scheduler::Pick() {
    const bool canGoOn = std::ranges::find(ready_, running_) != ready_.end();
    switch (policy_) {
        case Policy::KeepRunning:
            if (canGoOn && running_->priority > 0) return *running_;  // it has not given way
            break;
        case Policy::Sticky:
            if (canGoOn && Random(8) != 0) return *running_;
            [[fallthrough]];
        case Policy::Uniform:
            return *ready_[Random(ready_.size())];
        case Policy::Priorities:
            break;
    }
    return **std::ranges::max_element(ready_, {}, &Agent::priority);
}

Agent& Scheduler::StartThread(const Step& step, std::function<void()> body) {
    Agent& agent = TakeAgent(std::move(body));
    Point(step);
    return agent;
}

void Scheduler::Join(const Step& step, Agent& agent) {
    Point(step);
    while (agent.state != Agent::State::Ended) Wait(step, &agent, Never);
}

void Scheduler::CloseHandle(Agent& agent) {
    if (!agent.handleOpen) Fail("the handle of a thread is closed twice");
    agent.handleOpen = false;
}

Agent* Scheduler::AgentOf(const void* handle) const noexcept {
    const auto found = std::ranges::find(agents_, handle);
    return found != agents_.end() ? *found : nullptr;
}

void Scheduler::Fail(std::string what) {
    failure_ = Describe(std::move(what));
    Agent& stuck = *self;
    done_.Post();
    for (;;) stuck.turn.Wait();
}

Failure Scheduler::Describe(std::string what) const {
    std::ostringstream trace;
    std::map<const void*, std::size_t> objects;
    const std::size_t hidden = steps_.size() - std::min(steps_.size(), StepsShown);
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        const Step& step = steps_[i];
        if (step.object != nullptr) objects.try_emplace(step.object, objects.size() + 1);
        if (i < hidden) continue;
        trace << "  " << i + 1 << "  thread " << step.agent << "  " << step.what;
        if (const Agent* const agent = AgentOf(step.object)) {
            trace << " thread " << agent->number;
        } else if (step.object != nullptr) {
            trace << " #" << objects[step.object];
        }
        if (step.place != nullptr) trace << "  " << NameOf(step.place);
        trace << '\n';
    }
    for (const Agent* const agent : agents_) {
        constexpr const char* names[] = {"can run", "waits", "has ended"};
        trace << "  thread " << agent->number << ' ' << names[static_cast<int>(agent->state)] << '\n';
    }
    return {seed_, std::move(what), std::move(trace).str()};
}

std::ostream& operator<<(std::ostream& stream, const Failure& failure) {
    return stream << "seed " << failure.seed << ": " << failure.what << '\n' << failure.trace;
}

std::optional<Failure> Run(std::uint64_t seed, const std::function<void()>& scenario) {
    return Scheduler::Instance().Run(seed, scenario);
}

std::optional<Failure> Explore(std::uint64_t seedCount, const std::function<void()>& scenario) {
    for (std::uint64_t seed = 0; seed < seedCount; ++seed) {
        if (auto failure = Run(seed, scenario)) return failure;
    }
    return std::nullopt;
}

void Point(const char* what) {
    Scheduler::Instance().Point({what, nullptr, __builtin_return_address(0)});
}

void WaitUntil(const char* what, const std::function<bool()>& condition) {
    while (!condition()) {
        Scheduler::Instance().Wait({what, nullptr, __builtin_return_address(0)}, nullptr, Never, &condition);
    }
}

std::uint64_t Choose(std::uint64_t bound) {
    return Scheduler::Instance().Random(bound);
}

void Require(bool kept, const char* promise) {
    if (!kept) Scheduler::Instance().Fail(std::string("broken promise: ") + promise);
}

RunThread::RunThread(std::function<void()> body)
    : agent_(&Scheduler::Instance().StartThread({"starts a thread", nullptr, __builtin_return_address(0)},
                                                std::move(body))) {}

RunThread::~RunThread() {
    Scheduler::Instance().Join({"joins", agent_, __builtin_return_address(0)}, *agent_);
    Scheduler::Instance().CloseHandle(*agent_);
}

}  // namespace Interleaving
