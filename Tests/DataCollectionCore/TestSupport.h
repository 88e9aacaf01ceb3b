// What the tests of this program replace or look into: the clocks, the time zone, thread creation, allocation, the log,
// the client's listener, and a manager.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "NodeFabric/Authoring.h"
#include "Platform/Time.h"
#include "Subsystems/ActionManager/ActionManager.h"
#include "Support/LogLines.h"

using namespace DataCollection;
using namespace DataCollection::ActionManagement;
using namespace Harbor;
using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

// The answers of the replaced functions.
struct FakeSystem {
    std::atomic<TimePoint> clock{};  // the epoch: the real clock
    Platform::DYNAMIC_TIME_ZONE_INFORMATION zone{};
    Platform::DWORD zoneResult = Platform::TIME_ZONE_ID_UNKNOWN;  // beside it the last error is 5
    std::atomic<Platform::DWORD> threadRefusal{0};                // the last error, instead of creating a thread
    std::atomic<int> threadsAsked{0};
};
inline FakeSystem System;
inline thread_local std::size_t Allocations = 0;  // of the calling thread

// Which call of a sweep fails: the callsLeft-th of the armed kind, on whatever thread it comes, and all behind it if
// the failure lasts.
enum class Fallible { Nothing, Call, Allocation };
struct Fault {
    std::atomic<Fallible> armed{Fallible::Nothing};
    std::atomic<int> callsLeft{0};
    bool lasts = false;
    std::atomic<HRESULT> code{S_OK};  // of the failure that has come about
    std::atomic<const char*> place{""};

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

// The lines that are written while this lives, as "ERR text", traces left out. One at a time.
class CapturedLog {
public:
    explicit CapturedLog(const char* maxSeverity) : lines_(maxSeverity) {}

    // Whether exactly such lines were written since the last call.
    testing::AssertionResult Wrote(const Texts& patterns);

private:
    Stage::LogLines lines_;
};

template <class T>
ComponentPtr<CComponentObject<T>> NewObject() {
    CComponentObject<T>* object = nullptr;
    EXPECT_EQ(CComponentObject<T>::CreateObject(&object), S_OK);
    return {object, true};
}

// Notes the name of each action that it is told about, and then does what the test wants.
class RecordingListener : public ComponentRoot, public IActionListener {
public:
    static constexpr const char* Tag = "RecordingListener";
    using Queryable = InterfaceList<IActionListener>;

    HRESULT OnActionTriggered(IActionSubscription* subscription, IAction* action) override;
    void FinalRelease() { onEnd(); }

    Texts TakeCalls();
    void WaitForCalls(std::size_t count) const;

    std::function<HRESULT(IActionSubscription&)> onCall = [](auto&) { return S_OK; };
    std::function<void()> onEnd = [] {};

private:
    std::mutex lock_;
    Texts calls_;
    std::atomic<std::size_t> count_{0};
};
using ListenerPtr = ComponentPtr<CComponentObject<RecordingListener>>;
using SubscriptionPtr = ComponentPtr<IActionSubscription>;

// Every test must leave as many objects and node handles as it found.
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
    static std::uint64_t OpenHandles() {
        std::uint64_t count = 0;
        EXPECT_EQ(AcnGetOpenHandleCount(&count), S_OK);
        return count;
    }

    const std::uint32_t objects_ = LivingObjects();
    const std::uint64_t handles_ = OpenHandles();
};

inline constexpr WideChar IntervalName[] = u"PollingIntervalInMilliseconds";

inline ACNode Configuration(std::uint32_t interval) {
    ACNode node;
    node.Create(u"ActionManager", nullptr);
    node.SetText(u"Other", u"ignored", MeasureText);
    EXPECT_EQ(AcnSetAttribute(node.Handle(), IntervalName, AcnTypeUInt32, &interval, sizeof(interval)), S_OK);
    return node;
}

// A manager whose cycles the test runs itself, or whose worker it starts by Configure.
class ManagerTest : public LeakChecked {
protected:
    static constexpr TimePoint Creation = std::chrono::sys_days{std::chrono::year{2024} / 3 / 5};
    static constexpr TimedActionSettings EveryMillisecond{0, false, 0, TimedActionType::Repeat, 1};

    ManagerTest() { System.clock = Creation; }

    // To EveryMillisecond.
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
