#include "ConfigServer/ConfigServer.h"

#include <atomic>
#include <functional>
#include <map>

#include "Common/Base/ConditionVariable.h"
#include "Common/Nodes/ModificationRecords.h"
#include "FailingAllocation.h"
#include "Platform/Process.h"
#include "Support/JoiningThread.h"
#include "Support/StoreFixture.h"

using namespace Harbor;
using namespace ConfigServer;

namespace {

using Subscription = ComponentPtr<IACModifySubscription>;

constexpr std::int64_t EveryLevel = 0x7FFFFFFF;
constexpr std::int32_t EveryChange = 31;

struct Reported {
    WideString path;
    std::uint32_t changes = 0;
    WideString snapshotPath;
    WideString value;  // of the attribute Value

    bool operator==(const Reported&) const = default;
};

// Records the reports and runs the test's action.
class Listener : public IACModifyCallback {
public:
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override { return --references_; }
    HRESULT QueryInterface(const GUID*, void**) override { return E_NOINTERFACE; }

    HRESULT OnTriggered(IACModifySubscription* subscription, int kind, IACNodeModifyEnum* modifications) override {
        EXPECT_EQ(kind, NodesModified);
        ForEachModifiedNode(modifications, [this](const ModifiedNode& record) { Keep(record); });
        onCall(*subscription);
        return S_OK;
    }

    std::function<void(IACModifySubscription&)> onCall = [](IACModifySubscription&) {};

    std::vector<Reported> WaitFor(std::size_t count) {
        UniqueLock lock(lock_);
        grown_.Wait(lock, [&] { return reports_.size() >= count; });
        return reports_;
    }
    std::vector<Reported> All() { return WaitFor(0); }
    std::uint32_t References() const { return references_; }

private:
    void Keep(const ModifiedNode& record) {
        Reported reported{record.path, record.mask, record.node.GetFullPath(), {}};
        (void)record.node.TryGetText(u"Value", reported.value);
        const LockGuard lock(lock_);
        reports_.push_back(std::move(reported));
        grown_.NotifyAll();
    }

    std::atomic<std::uint32_t> references_{0};
    Lock lock_;
    ConditionVariable grown_;
    std::vector<Reported> reports_;
};

// Opened once; the waiting threads then go on.
class Gate {
public:
    void Open() {
        const LockGuard guard(lock_);
        isOpen_ = true;
        opened_.NotifyAll();
    }
    void Wait() {
        UniqueLock lock(lock_);
        opened_.Wait(lock, [this] { return isOpen_; });
    }

private:
    Lock lock_;
    ConditionVariable opened_;
    bool isOpen_ = false;
};

ACNode Parameters(std::int32_t changes = EveryChange) {
    ACNode parameters;
    parameters.Create(u"SubscribeConfig", nullptr);
    parameters.SetInt32(u"ChangesMask", changes);
    parameters.SetInt32(u"SubscribeOptions", 6);
    return parameters;
}

std::vector<WideString> Values(const std::vector<Reported>& reports) {
    std::vector<WideString> values;
    for (const Reported& reported : reports) values.push_back(reported.value);
    return values;
}

WideString Number(int number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

class ConfigServerTest : public StoreTest {
protected:
    void Write(const WideString& path, const WideString& value) {
        EXPECT_EQ(tree_->WriteNode(path, {{u"Value", value}}), S_OK);
    }

    Subscription Add(Listener& listener, const WideString& path, std::int64_t maxDepth = EveryLevel) {
        const FilterByPathNode filter(path, WatchedNodes::PathAndBelow, maxDepth);
        const ACNode parameters = Parameters();
        Subscription subscription;
        EXPECT_EQ(service_->AddSubscription(filter.Handle(), parameters.Handle(), &listener, subscription.Address()),
                  S_OK);
        return subscription;
    }

    Subscription Watch(Listener& listener, const WideString& path, std::int64_t maxDepth = EveryLevel) {
        Subscription subscription = Add(listener, path, maxDepth);
        EXPECT_EQ(subscription->Start(), S_OK);
        return subscription;
    }

    // Returns after everything written before has been reported.
    void Flush() {
        Listener listener;
        const Subscription subscription = Watch(listener, u"\\Flush\\Point");
        Write(u"\\Flush\\Point", u"");
        listener.WaitFor(1);
    }

    void EndService() {
        service_.Reset();
        tree_.Reset();
    }

    void TearDown() override {
        EndService();
        StoreTest::TearDown();
    }

    ComponentPtr<IConfigTree> tree_ = CreateConfigServer();
    ComponentPtr<IACConfigService> service_ = QueryOrThrow<IACConfigService>(tree_);
};

// All threads write one node: a report with the value of another write was not made together with its own write.
TEST_F(ConfigServerTest, ReportsEachWriteOnceAndInOrderToEveryListener) {
    constexpr int Writers = 4;
    constexpr int Writes = 300;
    Listener first;
    Listener second;
    const Subscription subscriptions[] = {Watch(first, u"\\A"), Watch(second, u"\\A\\B")};
    {
        std::vector<JoiningThread> writers;
        for (int writer = 0; writer < Writers; ++writer) {
            writers.emplace_back([this, writer] {
                for (int number = 0; number < Writes; ++number) {
                    Write(u"\\A\\B", Number(writer) + u" " + Number(number));
                }
            });
        }
    }
    Flush();

    std::vector<WideString> inOrder;
    for (int number = 0; number < Writes; ++number) inOrder.push_back(Number(number));
    std::map<WideString, std::vector<WideString>> numbersByWriter;
    for (const WideString& value : Values(first.All())) numbersByWriter[value.substr(0, 1)].push_back(value.substr(2));
    EXPECT_EQ(numbersByWriter.size(), Writers);
    for (const auto& [writer, numbers] : numbersByWriter) EXPECT_EQ(numbers, inOrder);
    EXPECT_EQ(second.All(), first.All());
    EXPECT_EQ(first.References(), 0u);
}

TEST_F(ConfigServerTest, FiltersReportsByPathDepthAndKindOfChange) {
    constexpr auto added = static_cast<std::int32_t>(NodeAdded), written = static_cast<std::int32_t>(AttributesWritten);
    // The watch's path, whether it excludes that node, its depth and changes; the path written, and whether the write
    // is reported.
    const std::tuple<const char16_t*, bool, std::int64_t, std::int32_t, const char16_t*, bool> cases[] = {
        {u"\\A\\B", false, EveryLevel, EveryChange, u"\\A\\B", true},
        {u"\\A\\B", false, EveryLevel, EveryChange, u"\\A\\B\\C\\D\\E", true},
        {u"\\A\\B", false, EveryLevel, EveryChange, u"\\A\\BC", false},
        {u"\\A\\B", false, EveryLevel, EveryChange, u"\\A\\b", false},
        {u"\\A\\B\\C", false, EveryLevel, EveryChange, u"\\A\\B", false},
        {u"\\A", false, 0, EveryChange, u"\\A\\B", false},
        {u"\\A\\B", false, 0, EveryChange, u"\\A\\B", true},
        {u"\\A\\B", false, 1, EveryChange, u"\\A\\B\\C", true},
        {u"\\A\\B", false, 1, EveryChange, u"\\A\\B\\C\\D", false},
        {u"\\A\\B", true, 1, EveryChange, u"\\A\\B", false},
        {u"\\A\\B", true, 1, EveryChange, u"\\A\\B\\C", true},
        {u"\\A\\B", false, EveryLevel, added, u"\\A\\New", false},
        {u"\\A\\New", false, EveryLevel, added, u"\\A\\New\\Node", true},
        {u"\\A\\New", false, EveryLevel, added, u"\\A\\New\\Node", false},
        {u"\\A\\New", false, EveryLevel, written, u"\\A\\New\\Node", true},
    };
    int number = 0;
    for (const auto& [watched, isParent, maxDepth, changes, path, covered] : cases) {
        Listener listener;
        const auto nodes = isParent ? WatchedNodes::BelowPath : WatchedNodes::PathAndBelow;
        const FilterByPathNode filter(watched, nodes, maxDepth);
        Subscription subscription;
        ASSERT_EQ(
            service_->AddSubscription(filter.Handle(), Parameters(changes).Handle(), &listener, subscription.Address()),
            S_OK);
        ASSERT_EQ(subscription->Start(), S_OK);
        Write(path, u"x");
        Flush();
        EXPECT_EQ(listener.All().size(), covered ? 1u : 0u) << number;
        ++number;
    }
}

// The callback runs until the end of its subscription has begun, and then gives the ending thread every chance to
// return too early.
TEST_F(ConfigServerTest, WaitsForTheRunningCallbackWhenASubscriptionEnds) {
    for (const bool byRelease : {false, true}) {
        Gate entered;
        std::atomic<bool> callerReturned{false}, left{false};
        Listener listener;
        listener.onCall = [&](IACModifySubscription& subscription) {
            entered.Open();
            while (subscription.Start() == S_OK) Platform::Sleep(0);
            for (int turn = 0; turn < 1000 && !callerReturned; ++turn) Platform::Sleep(0);
            left = true;
        };
        Subscription subscription = Watch(listener, u"\\A");
        for (const WideChar* const value : {u"1", u"2"}) Write(u"\\A\\B", value);
        entered.Wait();
        if (byRelease) {
            subscription.Reset();
        } else {
            EXPECT_EQ(service_->RemoveSubscription(subscription.Get()), S_OK);
        }
        callerReturned = true;
        EXPECT_TRUE(left);
        Flush();
        EXPECT_EQ(listener.All().size(), 1u);
    }
}

// As a callback does that keeps the pointer in a counting one for the time of the call.
TEST_F(ConfigServerTest, ACallbackMayCountItsSubscriptionWhileTheLastReleaseWaits) {
    Gate entered;
    std::atomic<bool> left{false};
    Listener listener;
    listener.onCall = [&](IACModifySubscription& subscription) {
        entered.Open();
        while (subscription.Start() == S_OK) Platform::Sleep(0);
        for (int turn = 0; turn < 3; ++turn) {
            EXPECT_GT(subscription.AddRef(), 1u);
            EXPECT_GT(subscription.Release(), 0u);
        }
        left = true;
    };
    Subscription subscription = Watch(listener, u"\\A");
    Write(u"\\A\\B", u"1");
    entered.Wait();
    subscription.Reset();
    EXPECT_TRUE(left);
    Flush();
}

// Each allocation of a write fails in turn, those of its trace and of its report among them.
TEST_F(ConfigServerTest, ReportsARepeatedWriteInFullAfterMemoryRanOut) {
    Listener listener;
    const Subscription subscription = Watch(listener, u"\\A");
    const std::vector<TextAttribute> attributes{{u"Value", u"1"}};
    std::vector<Reported> expected;
    for (bool reached = true; reached;) {
        const WideString path = u"\\A\\" + Number(static_cast<int>(expected.size())) + u"\\C";
        HRESULT code = S_OK;
        reached = WithFailingAllocation(static_cast<int>(expected.size()),
                                        [&] { code = tree_->WriteNode(path, attributes); });
        if (code != S_OK) {
            EXPECT_EQ(code, E_OUTOFMEMORY);
            Write(path, u"1");
        }
        expected.push_back({path, static_cast<std::uint32_t>(AttributesWritten | NodeAdded), path, u"1"});
    }
    Flush();
    EXPECT_EQ(listener.All(), expected);
    EXPECT_GT(expected.size(), 5u);  // on Windows the store has an allocator of its own
}

TEST_F(ConfigServerTest, AddsAWatchCompletelyOrNotAtAllAndStartsItWithoutMemory) {
    Listener listener;
    const FilterByPathNode filter(u"\\A", WatchedNodes::PathAndBelow, EveryLevel);
    const ACNode parameters = Parameters();
    Add(listener, u"\\A");  // creates what the first call in a process creates, such as the log
    for (int number = 0;; ++number) {
        Subscription subscription;
        HRESULT code = S_OK;
        const bool reached = WithFailingAllocation(number, [&] {
            code = service_->AddSubscription(filter.Handle(), parameters.Handle(), &listener, subscription.Address());
        });
        EXPECT_EQ(code, subscription ? S_OK : E_OUTOFMEMORY) << number;
        if (!reached) break;
    }
    const Subscription subscription = Add(listener, u"\\A");
    for (int number = 0; WithFailingAllocation(number, [&] { EXPECT_EQ(subscription->Start(), S_OK); }); ++number) {
    }
    Write(u"\\A\\B", u"1");
    Flush();
    EXPECT_EQ(listener.All().size(), 1u);
}

}  // namespace
