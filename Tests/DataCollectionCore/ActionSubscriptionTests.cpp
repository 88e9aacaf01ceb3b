#include "Common/Base/HRes.h"
#include "Subsystems/ActionManager/ActionImpl.h"
#include "Subsystems/ActionManager/ActionSubscription.h"
#include "Subsystems/ActionManager/ForcedActions.h"
#include "TestSupport.h"

namespace {

using ActionPtr = ComponentPtr<IActionControl>;

// An action that cannot be passed to a listener, since it has no IAction.
class HiddenAction : public ActionImpl {
public:
    using Queryable = InterfaceList<IActionControl>;
};

template <class Class = ActionImpl>
ActionPtr MarkedAction(const WideString& name) {
    const ActionPtr action = Create<Class, IActionControl>();
    EXPECT_EQ(action->SetNameAndType(name, ScheduleActionType), S_OK);
    EXPECT_EQ(action->SetTriggered(true), S_OK);
    return action;
}

// Returns the answer of a query such as IsAlive.
template <class Object>
bool Ask(const ComponentPtr<Object>& object, HRESULT (Object::*question)(bool*)) {
    bool answer = false;
    EXPECT_EQ((object.Get()->*question)(&answer), S_OK);
    return answer;
}
bool IsMarked(const ActionPtr& action) {
    return Ask(action, &IActionControl::GetTriggered);
}
bool IsDisposed(const ActionPtr& action) {
    return Ask(action, &IActionControl::IsDisposed);
}

// A subscription and the steps that led to its state: L sets the listener, S starts, U unsubscribes, T runs a cycle.
struct Subscription {
    explicit Subscription(const std::vector<ActionPtr>& actions, std::string_view steps = "") {
        for (const auto& action : actions) EXPECT_EQ(control->SetAction(action.Get()), S_OK);
        for (const char step : steps) Do(step);
    }
    void Do(char step) {
        code = step == 'L'   ? control->SetListener(listener.Get())
               : step == 'S' ? view->Start()
               : step == 'U' ? view->Unsubscribe()
                             : control->TriggerActionsIfNeeded();
    }
    bool IsAlive() const { return Ask(control, &IActionSubscriptionControl::IsAlive); }

    ListenerPtr listener = NewObject<RecordingListener>();
    const ComponentPtr<IActionSubscriptionControl> control = Create<ActionSubscription, IActionSubscriptionControl>();
    const SubscriptionPtr view = QueryOrThrow<IActionSubscription>(control);
    HRESULT code = S_OK;  // of the last step
};

class Subscriptions : public LeakChecked {};
class Actions : public LeakChecked {};

}  // namespace

TEST_F(Actions, HaveTheLastValidNameAndType) {
    const ActionPtr action = Create<ActionImpl, IActionControl>();
    const auto view = QueryOrThrow<IAction>(action);
    EXPECT_EQ(action->SetNameAndType(u"", ScheduleActionType), E_INVALIDARG);
    EXPECT_EQ(action->SetNameAndType(u"A", GUID{}), E_INVALIDARG);
    WideString name = u"before";
    GUID type = IAction::Id;
    EXPECT_EQ(view->GetName(&name), E_UNEXPECTED);
    EXPECT_EQ(view->GetType(&type), E_UNEXPECTED);
    EXPECT_EQ(name, u"before");
    EXPECT_EQ(type, IAction::Id);
    EXPECT_EQ(action->SetNameAndType(u"A", ForcedStopActionType), S_OK);
    EXPECT_EQ(action->SetNameAndType(u"", ScheduleActionType), E_INVALIDARG);
    EXPECT_EQ(action->SetNameAndType(u"B", GUID{}), E_INVALIDARG);
    EXPECT_EQ(view->GetName(&name), S_OK);
    EXPECT_EQ(view->GetType(&type), S_OK);
    EXPECT_EQ(name, u"A");
    EXPECT_EQ(type, ForcedStopActionType);
}

TEST_F(Subscriptions, RejectANullListenerAndANullAction) {
    const Subscription subscription({});
    EXPECT_EQ(subscription.control->SetListener(nullptr), E_POINTER);
    EXPECT_EQ(subscription.control->SetAction(nullptr), E_POINTER);
}

TEST_F(Subscriptions, DeliverAndDetachAccordingToTheirState) {
    const struct {
        const char* steps;
        std::size_t calls;
        bool alive;
        HRESULT code = S_OK;
    } table[] = {
        {"T", 0, true},
        {"LT", 0, true},
        {"ST", 0, true},
        {"LTST", 1, true},
        {"LST", 1, true},
        {"LSTT", 1, true},
        {"LUT", 0, false},
        {"LSUUT", 0, false},
        {"LUST", 0, false},
        {"UT", 0, false},
        {"LSUTS", 0, false, E_FAIL},
        {"LSTUTUTS", 1, false, E_FAIL},
        {"LSTU", 1, true},
    };
    CapturedLog log("ERR");
    for (const auto& row : table) {
        SCOPED_TRACE(row.steps);
        const ActionPtr action = MarkedAction(u"A");
        const Subscription subscription({action}, row.steps);
        EXPECT_EQ(subscription.listener->TakeCalls().size(), row.calls);
        EXPECT_EQ(subscription.IsAlive(), row.alive);
        EXPECT_EQ(subscription.code, row.code);
        const Texts refused{"ERR Subscription started, but subscriber has not subscribed"};
        EXPECT_TRUE(log.Wrote(row.code == E_FAIL ? refused : Texts{}));
        EXPECT_EQ(IsMarked(action), row.calls == 0);
        EXPECT_EQ(IsDisposed(action), !row.alive);
    }
}

TEST_F(Subscriptions, StayConsistentWhenAListenerFailsOrUnsubscribes) {
    const std::string failed =
        "ERR DataCollection::ActionManagement::ActionSubscription::TriggerActionsIfNeeded failed: ";
    const ActionPtr hidden = MarkedAction<HiddenAction>(u"hidden");
    const struct {
        std::function<HRESULT(IActionSubscription&)> call;
        ActionPtr between;
        HRESULT code;
        Texts lines;
        Texts calls;
        bool firstMarked, lastMarked, alive;
    } table[] = {
        {[](auto&) { return E_FAIL; }, MarkedAction(u"b"), S_OK, {}, {"a", "b", "c"}, false, false, true},
        {[](auto& own) { return own.Unsubscribe(); }, MarkedAction(u"b"), S_OK, {}, {"a"}, false, true, false},
        {[](auto& own) -> HRESULT { own.Unsubscribe(), ThrowError(E_ABORT); },
         MarkedAction(u"b"),
         E_ABORT,
         {failed + "0x80004004 *"},
         {"a"},
         true,
         true,
         true},
        {[](auto&) { return S_OK; }, hidden, E_NOINTERFACE, {failed + "0x80004002 *"}, {"a"}, false, true, true},
    };
    CapturedLog log("ERR");
    for (const auto& row : table) {
        const ActionPtr first = MarkedAction(u"a"), last = MarkedAction(u"c");
        Subscription subscription({first, row.between, last}, "LS");
        bool aliveInside = false;
        subscription.listener->onCall = [&](IActionSubscription& own) {
            aliveInside = subscription.IsAlive();
            return row.call(own);
        };
        EXPECT_EQ(subscription.control->TriggerActionsIfNeeded(), row.code);
        EXPECT_TRUE(log.Wrote(row.lines));
        EXPECT_EQ(subscription.listener->TakeCalls(), row.calls);
        EXPECT_EQ(IsMarked(first), row.firstMarked);
        EXPECT_EQ(IsMarked(last), row.lastMarked);
        EXPECT_EQ(subscription.IsAlive(), row.alive);
        EXPECT_TRUE(aliveInside);
        subscription.view->Unsubscribe();
        subscription.Do('T');
        EXPECT_FALSE(subscription.IsAlive()) << "the lock must be free for the next cycle";
    }
}

TEST_F(Subscriptions, RefuseWhatWouldWaitForTheirOwnCall) {
    const ActionPtr first = MarkedAction(u"a"), second = MarkedAction(u"b");
    Subscription subscription({first}, "LS");
    std::vector<HRESULT> codes;
    subscription.listener->onCall = [&](IActionSubscription& own) {
        codes = {own.Start(), subscription.control->SetAction(second.Get()),
                 subscription.control->TriggerActionsIfNeeded()};
        EXPECT_TRUE(subscription.IsAlive());
        return S_OK;
    };
    CapturedLog log("ERR");
    subscription.Do('T');
    EXPECT_EQ(codes, std::vector<HRESULT>(3, E_UNEXPECTED));
    const auto refused = [](const std::string& operation) {
        return "ERR Subscription '*' Subscription ID '*'. " + operation +
               " is refused inside a call of this subscription.";
    };
    EXPECT_TRUE(log.Wrote({refused("Start"), refused("SetAction"), refused("TriggerActionsIfNeeded")}));
    EXPECT_EQ(subscription.listener->TakeCalls(), Texts{"a"});
    EXPECT_TRUE(IsDisposed(second));
    EXPECT_EQ(subscription.view->Start(), S_OK) << "after the call it is allowed again";
    subscription.Do('U');
    subscription.Do('T');
}

TEST_F(Subscriptions, EndAfterUnsubscribeWhenTheListenerHeldTheLastReference) {
    SubscriptionPtr held = QueryOrThrow<IActionSubscription>(Create<ActionSubscription, IActionSubscriptionControl>());
    IActionSubscription* const subscription = held.Get();
    ListenerPtr listener = NewObject<RecordingListener>();
    listener->onEnd = [&] { held.Reset(); };
    EXPECT_EQ(QueryOrThrow<IActionSubscriptionControl>(held)->SetListener(listener.Get()), S_OK);
    listener.Reset();
    CapturedLog log("DBG");
    EXPECT_EQ(subscription->Unsubscribe(), S_OK);
    EXPECT_TRUE(log.Wrote({"DBG Subscription '*'. will be unsubscribed.", "DBG Subscription '*' is deleted."}));
}

TEST_F(Subscriptions, ReleaseTheListenerAtUnsubscribeButNotDuringItsCall) {
    for (const char lastStep : {'U', 'T'}) {
        Subscription subscription({MarkedAction(u"A")}, "LS");
        int ended = 0;
        subscription.listener->onCall = [&](IActionSubscription& own) {
            own.Unsubscribe();
            EXPECT_EQ(ended, 0);
            return S_OK;
        };
        // The listener's destructor may call its subscription, so no lock may be held.
        subscription.listener->onEnd = [&] {
            ++ended;
            subscription.Do('U');
            subscription.Do('T');
        };
        subscription.listener.Reset();
        subscription.Do(lastStep);
        EXPECT_EQ(ended, 1);
        EXPECT_FALSE(subscription.IsAlive());
    }
}
