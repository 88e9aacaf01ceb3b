// The manager's worker: one thread that runs a cycle, sleeps for the polling interval, and so on until it is stopped.
#pragma once

#include <atomic>
#include <functional>

#include "Common/Base/ConditionVariable.h"
#include "Common/Base/Thread.h"
#include "Schedules/TimePoint.h"

namespace DataCollection::ActionManagement {

class Worker {
public:
    // One cycle at the moment `now`. It must not throw.
    using Cycle = std::function<void(const TimePoint& now)>;

    explicit Worker(Cycle cycle);
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // Creates the thread, unless there is one. A thread that the system refuses is thrown as HRX.
    void Initialize();

    // From now on no further cycle begins. Any thread; it does not wait.
    void RequestStop() noexcept { stopRequested_.store(true); }
    bool IsStopRequested() const noexcept { return stopRequested_.load(); }

    // Ends the thread, if there is one, after the cycle under way. Must not be called on the thread itself.
    void Stop() noexcept;

private:
    void Run() noexcept;

    const Cycle cycle_;

    // Set before a stop competes for the state lock: with a short interval the worker frees that lock only for an
    // instant, and must not take it again for another cycle.
    std::atomic<bool> stopRequested_{false};

    Harbor::ConditionVariable stopSignal_;
    Harbor::Lock stateLock_;  // guards all below; the worker holds it at all times except while it sleeps
    bool running_ = false;
    Harbor::Thread thread_;
};

}  // namespace DataCollection::ActionManagement
