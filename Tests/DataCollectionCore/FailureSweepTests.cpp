// Runs a client's whole session with the module again and again. In the first run the first call that can fail fails,
// in the second run the second call, and so on, until a run ends before it reaches its failure. Whatever fails, the
// client gets the code of that failure or does not notice it, succeeds when it repeats the operation, and nothing
// leaks.
#include <climits>
#include <cstdio>
#include <deque>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Common/Base/Text.h"
#include "Common/Logging/FileLogger.h"
#include "Common/Logging/FunctionTrace.h"
#include "DataCollection/TriggerStrategy.h"
#include "FakeService.h"
#include "ModuleBroker/Registration.h"
#include "Platform/Errors.h"
#include "Platform/Modules.h"
#include "Subsystems/ActionManager/GlobalSettings.h"
#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"
#include "Support/ScopedVariable.h"
#include "Support/TemporaryDirectory.h"

namespace {

class Client final : public Neighbour<IActionListener> {
public:
    HRESULT OnActionTriggered(IActionSubscription*, IAction* action) override {
        EXPECT_TRUE(mayBeCalled);
        ++calls;
        WideString name;
        return action->GetName(&name);
    }

    bool mayBeCalled = true;
    std::size_t calls = 0;
    SubscriptionPtr subscription;
};

constexpr WideChar Secret[] = u"5ecret";

ACNode Item(std::int32_t value) {
    ACNode root, items, item, child;
    root.Create(u"Root", nullptr);
    items.Create(u"ScopeItems", nullptr);
    item.Create(u"item", nullptr);
    child.Create(u"child", u"account");
    child.SetInt32(u"value", value);
    child.SetText(u"password", Secret, MeasureText);
    EXPECT_EQ(AcnAppendChild(item.Handle(), child.Handle()), S_OK);
    EXPECT_EQ(AcnAppendChild(items.Handle(), item.Handle()), S_OK);
    EXPECT_EQ(AcnAppendChild(root.Handle(), items.Handle()), S_OK);
    return root;
}

// Fills the buffer of a stream completely before the stream asks for memory.
struct LongText {};
WideStream& operator<<(WideStream& stream, LongText) {
    for (int i = 0; i < 2000; ++i) stream << u"t";
    return stream;
}

constexpr std::uint32_t Interval = 100'000;

std::ptrdiff_t EntriesOf(const char* directory) {
    return std::distance(std::filesystem::directory_iterator(directory), std::filesystem::directory_iterator());
}

constexpr std::uint32_t OpenErrors[] = {
    Platform::ERROR_SHARING_VIOLATION,   Platform::ERROR_PATH_NOT_FOUND,    Platform::ERROR_ACCESS_DENIED,
    Platform::ERROR_TOO_MANY_OPEN_FILES, Platform::ERROR_IO_DEVICE,         Platform::ERROR_TIMEOUT,
    Platform::ERROR_GEN_FAILURE,         Platform::ERROR_NOT_ENOUGH_MEMORY, Platform::ERROR_FILE_NOT_FOUND,
    Platform::ERROR_DISK_FULL,           Platform::ERROR_FILE_TOO_LARGE,    Platform::ERROR_CANT_RESOLVE_FILENAME};

struct Sweep {
    const char* name;
    Fallible kind;
    bool lasts;
};

class FailureSweep : public LeakChecked, public testing::WithParamInterface<Sweep> {
protected:
    FailureSweep() {
        std::set_terminate([] {
            std::fprintf(stderr, "terminated by the failure of call %d, %s\n", call_, InjectedFault.place.load());
            std::abort();
        });
        config_ = Configuration(Interval);
        ACNode command;
        command.Create(u"B", nullptr);
        command.SetText(u"Command", u"Start", MeasureText);
        ACNode& notification = service_.nodes.emplace_back();
        notification.Create(nullptr, nullptr);
        notification.SetText(u"ModifiedNodePath", u"\\A\\B", MeasureText);
        notification.SetInt64(u"ChangesMask", 1);
        EXPECT_EQ(AcnAppendChild(notification.Handle(), command.Handle()), S_OK);
        EXPECT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, static_cast<IACConfigService*>(&service_)), S_OK);
    }
    ~FailureSweep() override { EXPECT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, nullptr), S_OK); }

    // Returns the code of the operation, which may fail only with the code of the injected failure, and only if that
    // has occurred. If memory runs out, the operation may also throw std::bad_alloc.
    template <class Operation>
    static HRESULT Try(Operation operation) {
        const bool mayFail = InjectedFault.armed != Fallible::Nothing;
        HRESULT code = S_OK;
        try {
            code = operation();
        } catch (const std::bad_alloc&) {
            code = E_OUTOFMEMORY;
        }
        EndFailure();
        EXPECT_TRUE(Succeeded(code) || (mayFail && code == InjectedFault.code))
            << std::hex << code << " after " << InjectedFault.place;
        return code;
    }
    // Repeats the operation once if it failed; then it must succeed.
    template <class Operation>
    static void Do(Operation operation, HRESULT success = S_OK) {
        if (Try(operation) == success) return;
        EXPECT_TRUE(Failed(InjectedFault.code));
        EXPECT_EQ(Try(operation), success);
    }
    // After a failed registration the listener is never called, and it is released: at once, or with the manager if the
    // watch failed to start.
    template <class Register>
    Client& Subscribe(Register registration) {
        for (;;) {
            Client& client = clients_.emplace_back();
            if (Succeeded(Try([&] { return registration(client); }))) return client;
            client.mayBeCalled = false;
        }
    }
    Client& SubscribeRegular(const TimedActionSettings& schedule) {
        return Subscribe([&](Client& client) {
            return manager_->SubscribeRegularAction(&client, &schedule, client.subscription.Address());
        });
    }
    // A lasting failure ends with the operation, the cycle or the object in which it occurred.
    static void EndFailure() {
        if (Failed(InjectedFault.code)) InjectedFault.armed = Fallible::Nothing;
    }
    static bool FailedAt(std::string_view place) { return place == InjectedFault.place.load(); }
    void Cycle() {
        System.clock = System.clock.load() + 25h;
        static_cast<CComponentObject<ActionManager>*>(manager_.Get())->OnTimerEvent(System.clock);
        EndFailure();
    }

    void Live() {
        Do([&] {
            return CComponentObject<ActionManager>::CreateInstance(&IActionManager::Id,
                                                                   reinterpret_cast<void**>(manager_.Address()));
        });
        const HRESULT configured =
            Try([&] { return QueryOrThrow<IConfigurable>(manager_)->Configure(config_.Handle()); });
        EXPECT_TRUE(Failed(configured) || GlobalSettings::Instance()->PollingIntervalInMilliseconds() == Interval);
        Client& often = SubscribeRegular({0, false, 0, TimedActionType::Repeat, 1});
        Client& daily = SubscribeRegular({3600, true, 86400, TimedActionType::SpecificTime, 0});
        Client& forced = Subscribe([&](Client& client) {
            return manager_->SubscribeForcedAction(&client, &point_, client.subscription.Address());
        });
        const std::array subscribed{&often, &daily, &forced};
        for (Client* client : subscribed) Do([&] { return client->subscription->Start(); });
        Do([&] { return service_.Report(); });
        const bool failedBeforeCycle = Failed(InjectedFault.code);
        Cycle();

        // The failure affects only its own call. The cycle in which it occurred loses at most a command that the store
        // failed to read.
        const Fallible armed = InjectedFault.armed.exchange(Fallible::Nothing);
        Cycle();
        EXPECT_TRUE(failedBeforeCycle || forced.calls > 0 || FailedAt("AcnGetAttribute"));
        Do([&] { return service_.Report(); });
        Cycle();
        EXPECT_GE(forced.calls, 1u);
        EXPECT_GE(often.calls, 2u);
        EXPECT_GE(daily.calls, 2u);
        for (const Client& client : clients_) {
            EXPECT_TRUE(client.mayBeCalled || client.references == 0 || FailedAt("IACModifySubscription::Start"));
        }
        InjectedFault.armed = armed;

        for (Client* client : subscribed) {
            Do([&] { return client->subscription->Unsubscribe(); });
            client->mayBeCalled = false;
            client->subscription.Reset();
        }
        Cycle();
        Cycle();
        Do([&] { return strategy_->OnConfigurationUpdate(before_.Handle(), same_.Handle()); }, S_FALSE);
        Do([&] { return strategy_->OnConfigurationUpdate(before_.Handle(), changed_.Handle()); });
        manager_.Reset();
    }

    static void FailAt(int call) {
        Stage::PassLogInterval();  // the log reads its settings and opens its file again
        call_ = call;
        InjectedFault.code = S_OK;
        InjectedFault.place = "";
        InjectedFault.callsLeft = call;
        InjectedFault.lasts = GetParam().lasts;
        InjectedFault.armed = GetParam().kind;
    }

    // Returns whether the failure occurred.
    bool LiveWithFailureOf(int call) {
        const std::uint32_t objects = LivingObjects();
        const auto handles = OpenHandles();
        std::filesystem::remove(directory_ / "a.log");
        System.clock = TimePoint(std::chrono::sys_days{std::chrono::year{2024} / 3 / 5});
        GlobalSettings::Instance()->Load(Configuration(1));
        clients_.clear();
        service_.removed.clear();
        SCOPED_TRACE(call);
        FailAt(call);
        Live();
        InjectedFault.armed = Fallible::Nothing;
        for (const Client& client : clients_) EXPECT_EQ(client.references, 0u);
        EXPECT_EQ(service_.references, 1u);  // the broker's
        for (const FakeWatch& watch : service_.watches) EXPECT_EQ(watch.references, 0u);
        EXPECT_EQ(LivingObjects(), objects);
        const std::string text = (std::ostringstream() << std::ifstream(directory_ / "a.log").rdbuf()).str();
        EXPECT_EQ(text.find(std::string_view(reinterpret_cast<const char*>(Secret), sizeof(Secret) - sizeof(WideChar))),
                  text.npos);
        EXPECT_EQ(OpenHandles(), handles);
        return Failed(InjectedFault.code);
    }

    // Repeats the run, in which one call fails, until it ends without a failure. An opening fails in each way.
    template <class Run>
    static void FailEachCall(Run run, int leastCalls) {
        int call = 1;
        InjectedFault.openError = OpenErrors[0];
        for (std::size_t kind = 0; run(call);) {
            const bool isOpening = FailedAt("CreateFileW") || FailedAt("GetPrivateProfileStringW");
            kind = isOpening ? (kind + 1) % std::size(OpenErrors) : 0;
            InjectedFault.openError = OpenErrors[kind];
            if (kind == 0) ++call;
        }
        EXPECT_GT(call, leastCalls);
        RecordProperty("calls", call);
    }

    // The load is refused, or it gives a module that works. Returns whether the failure occurred.
    static bool LoadWithFailureOf(int call) {
        SCOPED_TRACE(call);
        const WideString path = FromUtf8(ORV_MODULE_PATH);
        Platform::HMODULE library = nullptr;
        IComponentsModule* module = nullptr;
        FailAt(call);
        Do([&] {
            if (library == nullptr) library = Platform::LoadLibraryExW(path.c_str(), nullptr, 0);
            if (library == nullptr) return Failed(InjectedFault.code) ? InjectedFault.code.load() : E_UNEXPECTED;
            const auto getObject = reinterpret_cast<GetComponentsModuleObjectFunction>(
                Platform::GetProcAddress(library, GetComponentsModuleObjectName));
            return getObject(&module);
        });
        for (const GUID& id : {ActionManagerClassId, ScopeItemUpdateStrategyClassId, DefaultTriggerStrategyClassId}) {
            ComponentPtr<IComponentUnknown> object;
            Do([&] {
                return module->CreateInstance(&id, &IComponentUnknown::Id, reinterpret_cast<void**>(object.Address()));
            });
        }
        EXPECT_TRUE(Platform::FreeLibrary(library));
        InjectedFault.armed = Fallible::Nothing;
        EXPECT_FALSE(Platform::FreeLibrary(library));
        return Failed(InjectedFault.code);
    }

    // Only HRX leaves a log statement. Returns whether the failure occurred.
    static bool LogWithFailureOf(int call) {
        SCOPED_TRACE(call);
        FailAt(call);
        try {
            LOG(Dbg, LongText());
            TRACE_FUNCTION(Dbg, LongText());
        } catch (const HRX& failure) {
            EXPECT_EQ(failure.Code(), InjectedFault.code);
        } catch (const std::bad_alloc&) {
            ADD_FAILURE() << "memory ran out at " << InjectedFault.place;
        }
        InjectedFault.armed = Fallible::Nothing;
        return Failed(InjectedFault.code);
    }

private:
    static inline int call_ = 0;

    const TemporaryDirectory directory_;
    const ScopedVariable maxSeverity_{"GS_Logger_MaxSeverity", "DBG3"};
    const ScopedVariable hidden_{"GS_Logger_HiddenNodeTypeAttrs", "account:password"};
    const ScopedVariable logPath_{"GS_Logger_Path", directory_.Path()};
    FileLogger file_{u"a.log", u"banner\r\n"};
    const LogRegistration registration_{file_};
    const ForcedActionConfig point_{u"B", u"A", false};
    const ACNode before_ = Item(1), same_ = Item(1), changed_ = Item(2);
    const ComponentPtr<ITriggerStrategy> strategy_ = Create<ScopeItemUpdateStrategy, ITriggerStrategy>();
    ACNode config_;
    FakeService service_;
    std::deque<Client> clients_;
    ComponentPtr<IActionManager> manager_;
};

}  // namespace

TEST_P(FailureSweep, ReturnsTheCodeOfTheFailureAndLeaksNothing) {
    EXPECT_FALSE(LiveWithFailureOf(INT_MAX));
    const auto threads = EntriesOf("/proc/self/task"), descriptors = EntriesOf("/proc/self/fd");
    FailEachCall([&](int call) { return LiveWithFailureOf(call); }, 300);
    EXPECT_EQ(EntriesOf("/proc/self/task"), threads);
    EXPECT_EQ(EntriesOf("/proc/self/fd"), descriptors);
}

TEST_P(FailureSweep, RefusesALoadOrGivesAModuleThatWorks) {
    FailEachCall(LoadWithFailureOf, 50);
}

TEST_P(FailureSweep, LetsOnlyFailuresOfThisLibraryLeaveALogStatement) {
    FailEachCall(LogWithFailureOf, 10);
}

INSTANTIATE_TEST_SUITE_P(EachOfThe, FailureSweep,
                         testing::Values(Sweep{"Calls", Fallible::Call, false},
                                         Sweep{"Allocations", Fallible::Allocation, false},
                                         Sweep{"AllocationsFromThereOn", Fallible::Allocation, true}),
                         [](const auto& sweep) { return sweep.param.name; });
