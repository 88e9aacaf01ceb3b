#include "Subsystems/ActionManager/ActionManager.h"

#include "Common/Failures/MethodEdge.h"
#include "Common/Nodes/NodeDump.h"
#include "Subsystems/ActionManager/ActionSubscription.h"
#include "Subsystems/ActionManager/GlobalSettings.h"

namespace DataCollection::ActionManagement {

using namespace Harbor;

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
        worker_.Initialize();
        return S_OK;
    });
}

// The steps here cannot fail, so that nothing keeps the worker from being joined: what their traces cannot write is
// lost.
void ActionManager::FinalRelease() noexcept {
    worker_.RequestStop();
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionManagement::ActionManager::FinalRelease");
    worker_.Stop();
    // The watches end while this object is still whole: until a watch has ended, its service may call OnTriggered.
    forcedSubscriptions_.Clear();
}

HRESULT ActionManager::SubscribeRegularAction(IActionListener* listener, const TimedActionSettings* schedule,
                                              IActionSubscription** subscription) {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionManagement::ActionManager::SubscribeRegularAction"),
                      [&] {
                          if (listener == nullptr || subscription == nullptr) ThrowError(E_POINTER);
                          TimedAction action(*schedule);
                          auto created = CreateSubscription(listener, {ComponentPtr(action.GetAction())});
                          try {
                              const LockGuard guard(registryLock_);
                              regularActions_.Add(std::move(action), guard);
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
    auto& created = static_cast<ActionSubscription&>(*control.Get());
    ThrowIfFailed(control->SetListener(listener));
    std::vector<ActionImpl*> ownActions;
    for (const auto& action : actions) {
        ThrowIfFailed(control->SetAction(action.Get()));
        ownActions.push_back(static_cast<ActionImpl*>(action.Get()));
    }
    created.LetReportMarks(ownActions);
    auto subscription = QueryOrThrow<IActionSubscription>(control);
    {
        const LockGuard guard(registryLock_);
        subscriptions_.Add(control, created.State(), guard);
    }
    // Registered from here on: a line that cannot be written must not make a failure of that.
    TRY_LOG(Dbg, u"Subscription '" << subscription.Get() << u"' created. Subscription ID: '" << control.Get() << u"'.");
    return subscription;
}

}  // namespace DataCollection::ActionManagement
