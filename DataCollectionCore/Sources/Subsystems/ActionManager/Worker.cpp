#include "Subsystems/ActionManager/Worker.h"

#include "Common/Base/HRes.h"
#include "Common/Logging/FunctionTrace.h"
#include "Subsystems/ActionManager/Clock.h"
#include "Subsystems/ActionManager/GlobalSettings.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

Worker::Worker(Cycle cycle) : cycle_(std::move(cycle)) {}

void Worker::Initialize() {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::Initialize");
    const LockGuard guard(stateLock_);
    if (running_) return;
    // True only when there is a thread to join; the thread does not look before it has the lock.
    if (const HRESULT code = thread_.Start<&Worker::Run>(this); Failed(code)) ThrowError(code);
    running_ = true;
}

void Worker::Run() noexcept {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::Start");
    const std::chrono::milliseconds interval{GlobalSettings::Instance()->PollingIntervalInMilliseconds()};
    for (;;) {
        UniqueLock lock(stateLock_);
        const auto deadline = MonotonicClock::now() + interval;
        if (stopSignal_.WaitUntil(lock, deadline, [this] { return IsStopRequested(); })) return;
        const TimePoint now = CurrentTime();
        cycle_(now);
    }
}

void Worker::Stop() noexcept {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::Stop");
    RequestStop();
    {
        const LockGuard guard(stateLock_);
        if (!running_) return;
        running_ = false;
    }
    stopSignal_.NotifyAll();
    thread_.Join();
}

}  // namespace DataCollection::ActionManagement
