#include "Subsystems/ActionManager/ActionManager.h"

#include <algorithm>

#include "Common/Failures/MethodEdge.h"
#include "Common/Nodes/NodeDump.h"
#include "Subsystems/ActionManager/ActionSubscription.h"
#include "Subsystems/ActionManager/Clock.h"
#include "Subsystems/ActionManager/GlobalSettings.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

namespace {

// By doubling, as an insertion at the end would.
template <class Entry>
void ReserveForOneMore(std::vector<Entry>& entries) {
    if (entries.size() == entries.capacity()) entries.reserve(std::max<std::size_t>(2 * entries.capacity(), 8));
}

}  // namespace

HRESULT ActionManager::Configure(AcnHandle config) {
    bool alreadyConfigured = false;
    if (!configured_.compare_exchange_strong(alreadyConfigured, true)) return S_OK;

    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionManagement::ActionManager::Configure"), [&] {
        if (config == nullptr) {
            LOG(Err, u"ActionManager configuration is NULL");
            ThrowError(E_FAIL);
        }
        const ACNode node = ACNode::Borrow(config);
        LOG(Dbg, u"ActionManager configuration: " << node);
        GlobalSettings::Instance()->Load(node);
        Initialize();
        return S_OK;
    });
}

void ActionManager::Initialize() {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::Initialize");
    const LockGuard guard(stateLock_);
    if (running_) return;
    // True only when there is a worker to join; the worker doesn't look before it has the lock.
    if (const HRESULT code = worker_.Start<&ActionManager::Start>(this); Failed(code)) ThrowError(code);
    running_ = true;
}

void ActionManager::Start() noexcept {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::Start");
    const std::chrono::milliseconds interval{GlobalSettings::Instance()->PollingIntervalInMilliseconds()};
    for (;;) {
        UniqueLock lock(stateLock_);
        const auto deadline = MonotonicClock::now() + interval;
        if (stopSignal_.WaitUntil(lock, deadline, [this] { return !running_; })) return;
        const TimePoint now = CurrentTime();
        OnTimerEvent(now);
    }
}

void ActionManager::Stop() noexcept {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::Stop");
    {
        const LockGuard guard(stateLock_);
        if (!running_) return;
        running_ = false;
    }
    stopSignal_.NotifyAll();
    worker_.Join();
}

// The steps here can't fail, so that nothing keeps the worker from being joined: what their traces can't write is lost.
void ActionManager::FinalRelease() noexcept {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::FinalRelease");
    Stop();
    // The watches end while this object is still whole: until a watch has ended, its service may call OnTriggered.
    forcedSubscriptions_.clear();
    endedWatches_.clear();
}

HRESULT ActionManager::SubscribeRegularAction(IActionListener* listener, const TimedActionSettings* schedule,
                                              IActionSubscription** subscription) {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionManagement::ActionManager::SubscribeRegularAction"),
                      [&] {
                          if (listener == nullptr || subscription == nullptr) ThrowError(E_POINTER);
                          const auto action = std::make_shared<TimedAction>(*schedule);
                          auto created = CreateSubscription(listener, {ComponentPtr(action->GetAction())});
                          try {
                              const LockGuard guard(registryLock_);
                              regularActions_.push_back(action);
                          } catch (...) {
                              // Nobody else could: the client never gets to see the subscription.
                              created->Unsubscribe();
                              throw;
                          }
                          *subscription = created.Detach();
                          return S_OK;
                      });
}

ComponentPtr<IActionSubscription> ActionManager::CreateSubscription(
    IActionListener* listener, const std::vector<ComponentPtr<IActionControl>>& actions) {
    TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::CreateSubscription");
    const auto control = Create<ActionSubscription, IActionSubscriptionControl>();
    ThrowIfFailed(control->SetListener(listener));
    for (const auto& action : actions) ThrowIfFailed(control->SetAction(action.Get()));
    auto subscription = QueryOrThrow<IActionSubscription>(control);
    {
        const LockGuard guard(registryLock_);
        ReserveForOneMore(subscriptions_);
        // The cycle must not allocate: the room for its snapshot grows here, in step with the registry.
        if (snapshotRoom_.capacity() < subscriptions_.capacity()) snapshotRoom_.reserve(subscriptions_.capacity());
        subscriptions_.push_back(control);
    }
    // Registered from here on: a line that can't be written must not make a failure of that.
    TRY_LOG(Dbg, u"Subscription '" << subscription.Get() << u"' created. Subscription ID: '" << control.Get() << u"'.");
    return subscription;
}

}  // namespace DataCollection::ActionManagement
