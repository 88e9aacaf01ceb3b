// Lets each fallible call fail in turn: the first, the second, and so on until an operation needs no more.
#include <algorithm>

#include "../Platform/ScopedVariable.h"
#include "../Platform/TemporaryDirectory.h"
#include "Common/Logging/FileLogger.h"
#include "FakeConfigService.h"
#include "InjectedFailure.h"
#include "Subsystems/ActionManager/ActionManagerSettings.h"
#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"

using InjectedFailure::Scope;
using InjectedFailure::Source;

namespace {

// The partners do their own work; what fails is the module's.
class Service : public FakeConfigService {
public:
    HRESULT AddSubscription(AcnHandle filter, AcnHandle parameters, IACModifyCallback* client,
                            IACModifySubscription** subscription) override {
        const Scope quiet(false);
        return FakeConfigService::AddSubscription(filter, parameters, client, subscription);
    }
    HRESULT RemoveSubscription(IACModifySubscription* subscription) override {
        const Scope quiet(false);
        return FakeConfigService::RemoveSubscription(subscription);
    }
};
class CommandReport : public FakeReport {
public:
    HRESULT Next(AcnHandle* node) override {
        const Scope quiet(false);
        return FakeReport::Next(node);
    }
};
class Client : public RecordingListener {
public:
    HRESULT OnActionTriggered(IActionSubscription* subscription, IAction* action) override {
        const Scope quiet(false);
        return RecordingListener::OnActionTriggered(subscription, action);
    }
};

// Every statement is live, and goes to a file.
class FailureSweep : public LeakChecked, public testing::WithParamInterface<Source> {
protected:
    // Runs the scenario again and again, until the failure is not reached any more.
    template <class Scenario>
    void FailAtEachCall(Scenario scenario) {
        for (int nth = 1;; ++nth) {
            SCOPED_TRACE("call " + std::to_string(nth));
            const std::uint32_t objects = LivingObjects();
            FileLogger logger(u"Sweep.log", u"banner\r\n");
            const LogRegistration registration(logger);
            System.tick += 6000;  // the settings of the log are looked at anew
            InjectedFailure::Arm(GetParam(), nth);
            scenario();
            EXPECT_EQ(LivingObjects(), objects);
            const bool hasHappened = InjectedFailure::HasHappened();
            InjectedFailure::Arm(Source::None, 0);
            if (!hasHappened) break;
            ASSERT_FALSE(HasFailure());
        }
    }

    // An operation in which the failure may happen: it does without what failed, or tells it. Memory that runs out may
    // leave an edge as an exception, too.
    HRESULT Try(const std::function<HRESULT()>& operation) {
        const bool before = InjectedFailure::HasHappened();
        const HRESULT code = Run(operation);
        const bool mayFail = !before && InjectedFailure::HasHappened();
        EXPECT_TRUE(Succeeded(code) || (mayFail && IsCodeOf(GetParam(), code))) << std::hex << code;
        return code;
    }
    // The same for one that can be asked again, and then succeeds.
    void TryUntilItSucceeds(const std::function<HRESULT()>& operation, HRESULT success = S_OK) {
        const HRESULT code = Try(operation);
        EXPECT_EQ(code == success ? code : operation(), success);
    }

private:
    static HRESULT Run(const std::function<HRESULT()>& operation) {
        const Scope active(true);
        try {
            return operation();
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }
    static bool IsCodeOf(Source source, HRESULT code) {
        switch (source) {
            case Source::Store:
            case Source::Broker:
                return code == InjectedFailure::Code;
            case Source::Memory:
                return code == E_OUTOFMEMORY;
            case Source::Platform:
                return code == HResultFromWin32(InjectedFailure::LastError);
            case Source::None:
                return false;
        }
        return false;
    }

    const TemporaryDirectory directory_;
    const ScopedVariable path_{"GS_Logger_Path", directory_.Path()}, severity_{"GS_Logger_MaxSeverity", "DBG3"};
};

constexpr TimedActionSettings EveryMillisecond{0, false, 0, TimedActionType::Repeat, 1};
constexpr TimePoint Creation = std::chrono::sys_days{std::chrono::year{2024} / 3 / 5};

ACNode Item(std::int32_t value) {
    ACNode root, items, item, child;
    root.Create(u"Root", nullptr);
    items.Create(u"ScopeItems", nullptr);
    item.Create(u"item", nullptr);
    child.Create(u"child", nullptr);
    child.SetInt32(u"value", value);
    child.SetText(u"text", u"text", MeasureText);
    EXPECT_EQ(AcnAppendChild(item.Handle(), child.Handle()), S_OK);
    EXPECT_EQ(AcnAppendChild(items.Handle(), item.Handle()), S_OK);
    EXPECT_EQ(AcnAppendChild(root.Handle(), items.Handle()), S_OK);
    return root;
}

}  // namespace

// Registers both kinds of action, starts them, has a command and a due moment served, and unsubscribes.
TEST_P(FailureSweep, LeavesAClientItsCallsOrACode) {
    FailAtEachCall([this] {
        const auto service = NewObject<Service>();
        EXPECT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, static_cast<IACConfigService*>(service.Get())), S_OK);
        const auto listener = NewObject<Client>();
        const auto report = NewObject<CommandReport>();
        report->nodes.push_back(Change{u"Start"}.Node());
        System.clock = Creation;
        const auto nextCycle = [&](ActionManager& manager) {
            System.clock = System.clock.load() + 1s + Ticks{1};
            manager.OnTimerEvent(System.clock);
            return S_OK;
        };

        CComponentObject<ActionManager>* created = nullptr;
        TryUntilItSucceeds([&] { return CComponentObject<ActionManager>::CreateObject(&created); });
        ComponentPtr<CComponentObject<ActionManager>> manager(created, true);
        const ForcedActionConfig config{u"B", u"A", false};
        SubscriptionPtr regular, forced;
        TryUntilItSucceeds(
            [&] { return manager->SubscribeRegularAction(listener.Get(), &EveryMillisecond, regular.Address()); });
        TryUntilItSucceeds([&] { return manager->SubscribeForcedAction(listener.Get(), &config, forced.Address()); });
        for (const auto& subscription : {regular, forced}) TryUntilItSucceeds([&] { return subscription->Start(); });
        TryUntilItSucceeds([&] { return manager->OnTriggered(service->watches.back(), 0, report.Get()); });
        const bool before = InjectedFailure::HasHappened();
        Try([&] { return nextCycle(*manager.Get()); });
        const bool inCycle = !before && InjectedFailure::HasHappened();

        // What a failure kept from that cycle comes in the next one, but for a command that the store didn't give.
        nextCycle(*manager.Get());
        const Texts calls = listener->TakeCalls();
        EXPECT_GE(std::ranges::count(calls, "Schedule"), 1);
        EXPECT_LE(std::ranges::count(calls, "Schedule"), 2 + (inCycle ? 1 : 0));
        const bool mayBeLost = inCycle && GetParam() == Source::Store;
        EXPECT_GE(std::ranges::count(calls, "ForcedStart"), mayBeLost ? 0 : 1);
        EXPECT_EQ(std::ranges::count(calls, "Schedule") + std::ranges::count(calls, "ForcedStart"), std::ssize(calls));

        for (const auto& subscription : {regular, forced}) {
            TryUntilItSucceeds([&] { return subscription->Unsubscribe(); });
        }
        Try([&] { return nextCycle(*manager.Get()); });
        nextCycle(*manager.Get());
        EXPECT_EQ(listener->TakeCalls(), Texts{});
        regular.Reset();
        forced.Reset();
        Try([&] {
            manager.Reset();
            return S_OK;
        });
        EXPECT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, nullptr), S_OK);
    });
}

TEST_P(FailureSweep, LeavesAComparisonAnAnswerOrACode) {
    const ACNode before = Item(1), same = Item(1), changed = Item(2);
    FailAtEachCall([&, this] {
        ComponentPtr<ITriggerStrategy> strategy;
        TryUntilItSucceeds([&] {
            strategy = Create<ScopeItemUpdateStrategy, ITriggerStrategy>();
            return S_OK;
        });
        TryUntilItSucceeds([&] { return strategy->OnConfigurationUpdate(before.Handle(), same.Handle()); }, S_FALSE);
        TryUntilItSucceeds([&] { return strategy->OnConfigurationUpdate(before.Handle(), changed.Handle()); });
    });
}

TEST_P(FailureSweep, LeavesAManagerConfiguredOrNot) {
    const auto configuration = [](std::uint32_t interval) {
        ACNode node;
        node.Create(nullptr, nullptr);
        EXPECT_EQ(AcnSetAttribute(node.Handle(), u"PollingIntervalInMilliseconds", AcnTypeUInt32, &interval, 4), S_OK);
        return node;
    };
    const ACNode former = configuration(1), wanted = configuration(100'000);
    FailAtEachCall([&, this] {
        GlobalSettings::Instance()->Load(former);
        auto manager = NewObject<ActionManager>();
        const int threadsBefore = System.threadsAsked;
        const HRESULT code = Try([&] { return manager->Configure(wanted.Handle()); });
        EXPECT_EQ(System.threadsAsked, threadsBefore + (code == S_OK ? 1 : 0));
        if (code == S_OK) {
            EXPECT_EQ(GlobalSettings::Instance()->PollingIntervalInMilliseconds(), 100'000u);
        }
        Try([&] {
            manager.Reset();
            return S_OK;
        });
    });
}

std::string NameOf(const testing::TestParamInfo<Source>& info) {
    return std::array{"None", "Store", "Broker", "Memory", "Platform"}[static_cast<std::size_t>(info.param)];
}
INSTANTIATE_TEST_SUITE_P(Of, FailureSweep,
                         testing::Values(Source::Store, Source::Broker, Source::Memory, Source::Platform), NameOf);
