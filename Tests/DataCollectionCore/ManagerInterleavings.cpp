// What the manager promises, in every order of its threads: the clients', the worker and the configuration service's.
#include <optional>

#include "Common/Base/HRes.h"
#include "ConfigServer/ConfigServer.h"
#include "FakeService.h"
#include "Interleaving/ExpectPromises.h"
#include "ModuleBroker/Registration.h"
#include "Platform/Process.h"
#include "Subsystems/ActionManager/ActionImpl.h"

namespace {

using Interleaving::ExpectPromisesKept;
using Interleaving::Require;
using Interleaving::RunThread;
using Interleaving::WaitUntil;

using ManagerPtr = ComponentPtr<CComponentObject<ActionManager>>;

constexpr TimedActionSettings EveryMillisecond{0, false, 0, TimedActionType::Repeat, 1};

// Counts its calls. A call after the manager's end breaks a promise.
class Listener : public Neighbour<IActionListener> {
public:
    HRESULT OnActionTriggered(IActionSubscription* subscription, IAction*) override {
        ++calls;
        Interleaving::Point("a listener is called");
        Require(!managerHasEnded, "no call comes after the last Release has returned");
        onCall(*subscription);
        return S_OK;
    }

    std::function<void(IActionSubscription&)> onCall = [](auto&) {};
    std::atomic<int> calls{0};
    std::atomic<bool> managerHasEnded{false};
};

// An action of the client's own, asked for its mark in each cycle.
class ClientAction : public Neighbour<IAction, IActionControl> {
public:
    HRESULT QueryInterface(const GUID*, void** result) override {
        *result = ComponentPtr<IAction>(this).Detach();
        return S_OK;
    }
    HRESULT GetType(GUID*) override { return E_NOTIMPLEMENTED; }
    HRESULT GetName(WideString*) override { return E_NOTIMPLEMENTED; }
    HRESULT SetNameAndType(const WideString&, const GUID&) override { return E_NOTIMPLEMENTED; }
    HRESULT IsDisposed(bool*) override { return E_NOTIMPLEMENTED; }
    HRESULT OnSubscriptionAttached() override { return S_OK; }
    HRESULT OnSubscriptionDisposed() override {
        onDisposed();
        return S_OK;
    }
    HRESULT SetTriggered(bool) override { return S_OK; }
    HRESULT GetTriggered(bool*) override {
        onAsked();
        return S_OK;
    }

    std::function<void()> onAsked = [] {}, onDisposed = [] {};

private:
    static constexpr HRESULT E_NOTIMPLEMENTED = MakeHResult(0x80004001);
};

// Its worker sleeps for a millisecond between two cycles, or never, so that cycles come between any two steps of a
// client.
ManagerPtr NewManager(std::uint32_t interval = static_cast<std::uint32_t>(Interleaving::Choose(2))) {
    ManagerPtr manager = NewObject<ActionManager>();
    EXPECT_EQ(manager->Configure(Configuration(interval).Handle()), S_OK);
    return manager;
}

SubscriptionPtr Subscribe(IActionManager& manager, IActionListener& listener) {
    SubscriptionPtr subscription;
    EXPECT_EQ(manager.SubscribeRegularAction(&listener, &EveryMillisecond, subscription.Address()), S_OK);
    return subscription;
}

SubscriptionPtr SubscribeForced(IActionManager& manager, IActionListener& listener) {
    const ForcedActionConfig point{u"B", u"A", false};
    SubscriptionPtr subscription;
    EXPECT_EQ(manager.SubscribeForcedAction(&listener, &point, subscription.Address()), S_OK);
    return subscription;
}

ComponentPtr<IActionSubscriptionControl> ControlOf(IActionSubscription& subscription) {
    void* control = nullptr;
    EXPECT_EQ(subscription.QueryInterface(&IActionSubscriptionControl::Id, &control), S_OK);
    return ComponentPtr<IActionSubscriptionControl>::Attach(static_cast<IActionSubscriptionControl*>(control));
}

void WaitForCall(const Listener& listener) {
    WaitUntil("a call", [&] { return listener.calls > 0; });
}

// Lets the worker run several cycles of an interval of one millisecond.
void PassCycles() {
    Platform::Sleep(4);
}

// A command that the service reports.
ACNode Command(const WideChar* command) {
    ACNode notification, node;
    notification.Create(nullptr, nullptr);
    notification.SetText(u"ModifiedNodePath", u"\\A\\B", MeasureText);
    notification.SetInt64(u"ChangesMask", 1);
    node.Create(u"B", nullptr);
    node.SetText(u"Command", command, MeasureText);
    EXPECT_EQ(AcnAppendChild(notification.Handle(), node.Handle()), S_OK);
    return notification;
}

class Published {
public:
    explicit Published(IACConfigService* service) {
        EXPECT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, service), S_OK);
    }
    ~Published() { EXPECT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, nullptr), S_OK); }
};

// Runs the scenario with each seed; each run must leave as many objects and node handles as it found.
class ManagerInterleavings : public LeakChecked {
protected:
    static void Explore(const std::function<void()>& scenario) {
        ExpectPromisesKept([&] {
            const std::uint32_t objects = LivingObjects();
            const auto handles = OpenHandles();
            scenario();
            Require(LivingObjects() == objects, "each object ends, and ends once");
            Require(OpenHandles() == handles, "each node handle is closed");
        });
    }
};

}  // namespace

TEST_F(ManagerInterleavings, OfRegistrationStartUnsubscribeAndTheEndWithCycles) {
    Explore([] {
        Listener one, two, never;
        {
            ManagerPtr manager = NewManager();
            const RunThread client([&, own = manager]() mutable {
                const SubscriptionPtr subscription = Subscribe(*own.Get(), one);
                subscription->Start();
                WaitForCall(one);
                subscription->Unsubscribe();
                own.Reset();
            });
            const SubscriptionPtr unstarted = Subscribe(*manager.Get(), never);
            const SubscriptionPtr subscription = Subscribe(*manager.Get(), two);
            subscription->Start();
            WaitForCall(two);
            unstarted->Unsubscribe();
            manager.Reset();
        }
        one.managerHasEnded = two.managerHasEnded = true;
        Require(never.calls == 0, "a subscription that was not started brings no call");
        Require(one.references == 0 && two.references == 0 && never.references == 0, "each listener is let go");
    });
}

TEST_F(ManagerInterleavings, OfTwoClientsAndAListenerThatComesBack) {
    Explore([] {
        Listener back, inner, other;
        {
            const ManagerPtr manager = NewManager();
            back.onCall = [&](IActionSubscription& subscription) {
                bool alive = false;
                Require(ControlOf(subscription)->IsAlive(&alive) == S_OK && alive,
                        "a subscription is alive during its call");
                Require(Subscribe(*manager.Get(), inner)->Start() == S_OK, "a listener may register");
                Require(subscription.Unsubscribe() == S_OK, "a listener may unsubscribe");
            };
            const SubscriptionPtr subscription = Subscribe(*manager.Get(), back);
            const RunThread one([&] { subscription->Start(); });
            const RunThread two([&] {
                const SubscriptionPtr own = Subscribe(*manager.Get(), other);
                own->Start();
                WaitForCall(other);
                own->Unsubscribe();
                subscription->Unsubscribe();
            });
            if (back.calls > 0) WaitForCall(inner);
        }
        Require(back.calls <= 1, "no call comes after an Unsubscribe from inside a call");
        Require(back.references == 0 && inner.references == 0 && other.references == 0, "each listener is let go");
    });
}

TEST_F(ManagerInterleavings, OfAListenerThatWouldChangeItsOwnSubscription) {
    Explore([] {
        Listener listener;
        ClientAction more;
        {
            const ManagerPtr manager = NewManager();
            listener.onCall = [&](IActionSubscription& subscription) {
                const auto control = ControlOf(subscription);
                Require(subscription.Start() == E_UNEXPECTED, "Start is refused inside the subscription's call");
                Require(control->SetAction(&more) == E_UNEXPECTED, "SetAction is refused inside the call");
                subscription.Unsubscribe();
                Require(control->TriggerActionsIfNeeded() == E_UNEXPECTED,
                        "TriggerActionsIfNeeded is refused inside the call");
            };
            const SubscriptionPtr subscription = Subscribe(*manager.Get(), listener);
            subscription->Start();
            WaitForCall(listener);
        }
        Require(more.references == 0, "an action that was refused is not kept");
    });
}

TEST_F(ManagerInterleavings, OfAnActionThatAsksItsSubscriptionDuringItsDetachment) {
    Explore([] {
        Listener listener;
        ClientAction action;
        bool detached = false;
        {
            const ManagerPtr manager = NewManager();
            const SubscriptionPtr subscription = Subscribe(*manager.Get(), listener);
            const auto control = ControlOf(*subscription.Get());
            action.onDisposed = [&] {
                bool alive = false;
                Require(control->IsAlive(&alive) == S_OK && alive, "a subscription whose lock is busy counts as alive");
                detached = true;
            };
            control->SetAction(&action);
            subscription->Unsubscribe();
            WaitUntil("the detachment", [&] { return detached; });
        }
        Require(action.references == 0, "the action is let go");
    });
}

namespace {

// A watch ends, and a new one gets its address, while the service reports a command of the old one.
void ReportACommandOfAWatchThatEnds(HRESULT removal) {
    FakeService service;
    service.oneWatchForAll = true;
    service.removeResult = removal;
    service.nodes.push_back(Command(u"Start"));
    const Published published(&service);
    Listener before, after;
    {
        const ManagerPtr manager = NewManager();
        const SubscriptionPtr ended = SubscribeForced(*manager.Get(), before);
        ended->Start();
        bool reported = false;
        const RunThread reporting([&] {
            // A service may finish a report late, and continues reporting if it could not end the watch.
            if (service.removed.empty() || Failed(removal)) service.Report();
            reported = true;
        });
        ended->Unsubscribe();
        WaitUntil("the removal", [&] { return !service.removed.empty(); });
        const bool isStale = reported;
        after.onCall = [=](auto&) { Require(!isStale, "a command of an ended watch reaches nobody"); };
        const SubscriptionPtr next = SubscribeForced(*manager.Get(), after);
        next->Start();
        PassCycles();
    }
    Require(before.references == 0 && after.references == 0, "each listener is let go");
}

}  // namespace

TEST_F(ManagerInterleavings, OfCommandsWithTheRemovalOfTheirWatch) {
    Explore([] { ReportACommandOfAWatchThatEnds(S_OK); });
}

TEST_F(ManagerInterleavings, OfCommandsWithAFailedRemovalOfTheirWatch) {
    Explore([] { ReportACommandOfAWatchThatEnds(E_FAIL); });
}

TEST_F(ManagerInterleavings, OfTheStopWithCyclesThatNeverPause) {
    Explore([] {
        Listener listener;
        ClientAction action;
        int users = 2, cyclesAfterTheStop = 0;
        action.onAsked = [&] {
            if (users == 0) ++cyclesAfterTheStop;
        };
        {
            ManagerPtr manager = NewManager(0);
            const auto leave = [&](ManagerPtr& own) {
                --users;
                own.Reset();
            };
            const SubscriptionPtr subscription = Subscribe(*manager.Get(), listener);
            ControlOf(*subscription.Get())->SetAction(&action);
            subscription->Start();
            const RunThread client([&, own = manager]() mutable {
                Subscribe(*own.Get(), listener)->Unsubscribe();
                leave(own);
            });
            leave(manager);
        }
        Require(cyclesAfterTheStop <= 1, "no cycle begins after the last Release was entered");
    });
}

namespace {

// Does not end, nor does a watch of it, while another thread registers.
class ConsiderateService : public FakeService {
public:
    ConsiderateService() {
        for (FakeWatch& watch : watches) watch.onEnd = [this] { WaitForOthers(); };
    }
    std::uint32_t Release() override {
        const std::uint32_t left = FakeService::Release();
        if (left == 0) WaitForOthers();
        return left;
    }
    HRESULT RemoveSubscription(IACModifySubscription* watch) override {
        removing = true;
        Interleaving::Point("the service removes a watch");
        return FakeService::RemoveSubscription(watch);
    }

    std::atomic<bool> removing{false};
    std::atomic<std::uint32_t> registering{0};  // the id of the thread

private:
    void WaitForOthers() const {
        const std::uint32_t self = Platform::GetCurrentThreadId();
        WaitUntil("the registration of another thread", [&] { return registering == 0 || registering == self; });
    }
};

}  // namespace

TEST_F(ManagerInterleavings, OfAServiceWhoseLastReleaseWaitsForARegistration) {
    Explore([] {
        ConsiderateService service;
        std::optional<Published> published(&service);
        Listener listener;
        {
            const ManagerPtr manager = NewManager();
            const SubscriptionPtr ended = SubscribeForced(*manager.Get(), listener);
            const auto waitForRemoval = [&] { WaitUntil("a removal", [&] { return service.removing.load(); }); };
            const RunThread client([&] {
                waitForRemoval();
                service.registering = Platform::GetCurrentThreadId();
                Subscribe(*manager.Get(), listener)->Unsubscribe();
                Subscribe(*manager.Get(), listener)->Unsubscribe();
                service.registering = 0;
            });
            ended->Unsubscribe();
            waitForRemoval();
            published.reset();
        }
        Require(service.references == 0, "the service is let go");
        for (const FakeWatch& watch : service.watches) Require(watch.references == 0, "each watch is let go");
    });
}

TEST_F(ManagerInterleavings, OfAnEndDuringWhichAPartnerCountsAReference) {
    Explore([] {
        FakeService service;
        const Published published(&service);
        Listener listener;
        bool ending = false;
        {
            ManagerPtr manager = NewManager();
            IActionManager* const uncounted = manager.Get();
            const auto countOnce = [&] {
                if (ending) ComponentPtr<IActionManager>(uncounted).Reset();
            };
            listener.onCall = [=](auto&) { countOnce(); };
            for (FakeWatch& watch : service.watches) watch.onEnd = countOnce;
            const SubscriptionPtr forced = SubscribeForced(*manager.Get(), listener);
            const SubscriptionPtr regular = Subscribe(*manager.Get(), listener);
            regular->Start();
            const RunThread last([&, own = std::move(manager)]() mutable {
                WaitForCall(listener);
                ending = true;
                own.Reset();
            });
        }
        Require(listener.references == 0, "the listener is let go");
    });
}

TEST_F(ManagerInterleavings, OfCommandsOfTheStandInService) {
    Explore([] {
        Listener listener;
        {
            ComponentPtr<ConfigServer::IConfigTree> tree = ConfigServer::CreateConfigServer();
            const Published published(QueryOrThrow<IACConfigService>(tree).Get());
            ManagerPtr manager = NewManager();
            const auto write = [&](const WideChar* command) {
                Require(tree->WriteNode(u"\\Commands\\ManagedObjectsDataCollectionCommand\\A\\B\\C",
                                        {{u"Command", command}}) == S_OK,
                        "a node can be written");
            };
            const SubscriptionPtr subscription = SubscribeForced(*manager.Get(), listener);
            subscription->Start();
            write(u"Start");
            WaitForCall(listener);
            const RunThread host([&] {
                write(u"Stop");
                write(u"Start");
            });
            const RunThread client([&] { subscription->Unsubscribe(); });
            manager.Reset();
            listener.managerHasEnded = true;
        }
        Require(listener.references == 0, "the listener is let go");
    });
}
