// Replacements and helpers of this program's tests: the clocks, the time zone, thread creation, allocation, the log, a
// client's listener, and a manager.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "NodeFabric/Authoring.h"
#include "Platform/Time.h"
#include "Subsystems/ActionManager/ActionManager.h"
#include "Support/LogLines.h"
#include "Support/NodeLedger.h"

using namespace DataCollection;
using namespace DataCollection::ActionManagement;
using namespace Harbor;
using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

// The results of the replaced functions.
struct FakeSystem {
    std::atomic<TimePoint> clock{};  // the epoch means the real clock
    Platform::DYNAMIC_TIME_ZONE_INFORMATION zone{};
    Platform::DWORD zoneResult = Platform::TIME_ZONE_ID_UNKNOWN;  // the last error is then 5
    std::atomic<Platform::DWORD> threadRefusal{0};                // the last error instead of creating a thread, or 0
    std::atomic<int> threadsAsked{0};
};
inline FakeSystem System;
inline thread_local std::size_t Allocations = 0;  // of the calling thread

// Which call of a sweep fails: the callsLeft-th of the armed kind, on any thread, and all calls after it if the failure
// lasts.
enum class Fallible { Nothing, Call, Allocation };
struct Fault {
    std::atomic<Fallible> armed{Fallible::Nothing};
    std::atomic<int> callsLeft{0};
    bool lasts = false;
    std::atomic<HRESULT> code{S_OK};  // of the failure that has occurred
    std::atomic<const char*> place{""};
    std::atomic<std::uint32_t> openError{0};  // why a file cannot be opened

    bool Strikes(Fallible kind, const char* name, HRESULT failure) noexcept {
        if (armed != kind) return false;
        const int left = --callsLeft;
        if (left > 0 || (left < 0 && !lasts)) return false;
        place = name;
        code = failure;
        return true;
    }
};
inline Fault InjectedFault;

bool IsLike(std::string_view text, std::string_view pattern);  // a "*" is any text
std::string Narrow(std::u16string_view text);
std::string Shown(const void* pointer);  // as the log shows it

// The lines logged during its lifetime, as "ERR text", without traces. Only one may exist at a time.
class CapturedLog {
public:
    explicit CapturedLog(const char* maxSeverity) : lines_(maxSeverity) {}

    // Whether exactly these lines were written since the last call.
    testing::AssertionResult Wrote(const Texts& patterns);

private:
    Stage::LogLines lines_;
};

template <class T>
ComponentPtr<CComponentObject<T>> NewObject() {
    CComponentObject<T>* object = nullptr;
    EXPECT_EQ(CComponentObject<T>::CreateObject(&object), S_OK);
    return ComponentPtr<CComponentObject<T>>::Attach(object);
}

// Records the name of each triggered action and runs the test's action.
class RecordingListener : public ComponentRoot, public IActionListener {
public:
    static constexpr const char* Tag = "RecordingListener";
    using Queryable = InterfaceList<IActionListener>;

    HRESULT OnActionTriggered(IActionSubscription* subscription, IAction* action) override;
    void FinalRelease() { onEnd(); }

    Texts TakeCalls();
    void WaitForCalls(std::size_t count) const;

    std::function<void(IAction*)> onAction = [](auto*) {};  // before onCall
    std::function<HRESULT(IActionSubscription&)> onCall = [](auto&) { return S_OK; };
    std::function<void()> onEnd = [] {};

private:
    Lock lock_;
    Texts calls_;
    std::atomic<std::size_t> count_{0};
};
using ListenerPtr = ComponentPtr<CComponentObject<RecordingListener>>;
using SubscriptionPtr = ComponentPtr<IActionSubscription>;

// Every test must leave as many objects, and the same node handles, as it found.
class LeakChecked : public testing::Test {
protected:
    ~LeakChecked() override {
        EXPECT_EQ(LivingObjects(), objects_);
        EXPECT_EQ(OpenHandles(), handles_);
    }
    static std::uint32_t LivingObjects() {
        ComponentsModule::Instance().LockModule();
        return ComponentsModule::Instance().UnlockModule();
    }

private:
    const std::uint32_t objects_ = LivingObjects();
    const std::pair<std::uint64_t, std::uint64_t> handles_ = OpenHandles();
};

inline constexpr WideChar IntervalName[] = u"PollingIntervalInMilliseconds";

inline ACNode Configuration(std::uint32_t interval) {
    ACNode node;
    node.Create(u"ActionManager", nullptr);
    node.SetText(u"Other", u"ignored", MeasureText);
    EXPECT_EQ(AcnSetAttribute(node.Handle(), IntervalName, AcnTypeUInt32, &interval, sizeof(interval)), S_OK);
    return node;
}

// A manager whose cycles the test runs itself, or whose worker it starts with Configure.
class ManagerTest : public LeakChecked {
protected:
    static constexpr TimePoint Creation = std::chrono::sys_days{std::chrono::year{2024} / 3 / 5};
    static constexpr TimedActionSettings EveryMillisecond{0, false, 0, TimedActionType::Repeat, 1};

    ManagerTest() { System.clock = Creation; }

    // Registers the listener for EveryMillisecond.
    SubscriptionPtr Subscribe(const ListenerPtr& listener) {
        SubscriptionPtr subscription;
        EXPECT_EQ(manager_->SubscribeRegularAction(listener.Get(), &EveryMillisecond, subscription.Address()), S_OK);
        return subscription;
    }
    SubscriptionPtr SubscribeAndStart(const ListenerPtr& listener) {
        SubscriptionPtr subscription = Subscribe(listener);
        EXPECT_EQ(subscription->Start(), S_OK);
        return subscription;
    }
    // A cycle in which everything is due again.
    void Cycle() {
        System.clock = System.clock.load() + 1s + Ticks{1};
        manager_->OnTimerEvent(System.clock);
    }

    ComponentPtr<CComponentObject<ActionManager>> manager_ = NewObject<ActionManager>();
    const ListenerPtr listener_ = NewObject<RecordingListener>();
};
