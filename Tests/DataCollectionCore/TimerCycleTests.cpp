#include <stdexcept>

#include "Common/Base/HRes.h"
#include "TestSupport.h"

namespace {

class TimerCycle : public ManagerTest {};

}  // namespace

TEST_F(TimerCycle, ServesTheOthersWhenAListenerFails) {
    const struct {
        std::function<HRESULT(IActionSubscription&)> call;
        std::string code;  // empty if the call is not repeated
    } table[] = {
        {[](auto&) -> HRESULT { throw std::runtime_error("listener"); }, "0x8000FFFF"},
        {[](auto&) -> HRESULT { throw std::bad_alloc(); }, "0x8007000E"},
        {[](auto&) -> HRESULT { throw 1; }, "0x8000FFFF"},
        {[](auto&) -> HRESULT { ThrowError(E_ABORT); }, "0x80004004"},
        {[](auto&) { return E_FAIL; }, ""},
    };
    std::vector<SubscriptionPtr> subscriptions;
    std::vector<ListenerPtr> listeners;
    Texts lines;
    for (const auto& row : table) {
        listeners.push_back(NewObject<RecordingListener>());
        listeners.back()->onCall = row.call;
        subscriptions.push_back(SubscribeAndStart(listeners.back()));
        const auto control = QueryOrThrow<IActionSubscriptionControl>(subscriptions.back());
        if (row.code == "0x80004004") lines.push_back("ERR *TriggerActionsIfNeeded failed: 0x80004004 *");
        if (row.code.empty()) continue;
        lines.push_back("ERR Error when trying to trigger action for subscription '" + Shown(control.Get()) +
                        "':" + row.code + " *");
    }
    CapturedLog log("ERR");
    for (const bool due : {true, false}) {
        manager_->OnTimerEvent(Creation + (due ? 1s : 0s));
        EXPECT_TRUE(log.Wrote(lines));
        for (std::size_t i = 0; i < listeners.size(); ++i) {
            EXPECT_EQ(listeners[i]->TakeCalls().size(), due || !table[i].code.empty() ? 1u : 0u) << i;
        }
    }
}

TEST_F(TimerCycle, ReleasesAnUnsubscribedActionInTheSecondCycle) {
    const std::uint32_t before = LivingObjects();
    SubscribeAndStart(listener_)->Unsubscribe();
    Cycle();
    EXPECT_EQ(LivingObjects(), before + 2);
    manager_->OnTimerEvent(Creation);
    EXPECT_EQ(LivingObjects(), before);
    EXPECT_EQ(listener_->TakeCalls(), Texts{});
}

// Of so many that their storage grows and shrinks between the cycles.
TEST_F(TimerCycle, CallsListenersInOrderOfRegistration) {
    constexpr std::size_t rounds = 4, each = 1500;
    std::vector<std::size_t> called, expected;
    std::vector<SubscriptionPtr> subscriptions;
    for (std::size_t round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < each; ++i) {
            const ListenerPtr listener = NewObject<RecordingListener>();
            listener->onCall = [&called, id = subscriptions.size()](IActionSubscription&) {
                called.push_back(id);
                return S_OK;
            };
            subscriptions.push_back(SubscribeAndStart(listener));
        }
        // The first, and many in all places; in the last round all.
        for (std::size_t i = 0; i < subscriptions.size(); ++i) {
            if (i % (rounds - round) == 0) subscriptions[i]->Unsubscribe();
        }
        Cycle();
        called.clear();
        expected.clear();
        for (std::size_t i = 0; i < subscriptions.size(); ++i) {
            bool isAlive = false;
            EXPECT_EQ(QueryOrThrow<IActionSubscriptionControl>(subscriptions[i])->IsAlive(&isAlive), S_OK);
            if (isAlive) expected.push_back(i);
        }
        EXPECT_EQ(expected.empty(), round + 1 == rounds);
        Cycle();
        EXPECT_EQ(called, expected);
    }
}

TEST_F(TimerCycle, AllocatesNothingWhileNothingIsDue) {
    std::vector<SubscriptionPtr> subscriptions;
    for (int i = 0; i < 1000; ++i) subscriptions.push_back(SubscribeAndStart(listener_));
    for (int cycle = 0; cycle < 3; ++cycle) {
        const std::size_t before = Allocations;
        manager_->OnTimerEvent(Creation);
        EXPECT_EQ(Allocations, before);
    }
    Cycle();
    EXPECT_EQ(listener_->TakeCalls().size(), 1000u);
}
