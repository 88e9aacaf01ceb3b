// The cycle beside the plain rule that it must follow: random sequences drive both, and every call is compared.
#include <gmock/gmock.h>

#include <random>

#include "Common/Base/HRes.h"
#include "Subsystems/ActionManager/ActionImpl.h"
#include "TestSupport.h"

namespace {

using ActionPtr = ComponentPtr<IActionControl>;
using Calls = std::vector<std::pair<std::size_t, std::string>>;  // subscription and action

// What the cycle does, in the order of its steps, without anything that makes it fast.
struct PlainAction {
    std::string name;
    std::chrono::milliseconds interval{};
    TimePoint firstRun{}, lastTriggered{};
    bool isRegular = true, isMarked = false, isAttached = true;
};
struct PlainSubscription {
    std::vector<PlainAction> actions;  // the regular one first
    bool isAlive = true, isStarted = false, unsubscribeRequested = false;
};
struct PlainCycle {
    std::vector<PlainSubscription> subscriptions;
    // The calls of a cycle. A listener call may change the subscriptions; its failure keeps the mark.
    template <class Listener>
    void Run(const TimePoint& now, Listener listener) {
        std::vector<std::size_t> living;
        for (std::size_t i = 0; i < subscriptions.size(); ++i) {
            if (subscriptions[i].isAlive) living.push_back(i);
        }
        for (PlainSubscription& subscription : subscriptions) {
            PlainAction& action = subscription.actions.front();
            if (!action.isAttached || now < action.firstRun) continue;
            const auto intervals = (now - action.firstRun) / Ticks(action.interval);
            if (action.lastTriggered > action.firstRun + intervals * Ticks(action.interval)) continue;
            action.lastTriggered = now;
            action.isMarked = true;
        }
        for (const std::size_t i : living) Trigger(i, listener);
    }
    template <class Listener>
    void Trigger(std::size_t i, Listener listener) {
        for (std::size_t a = 0; a < subscriptions[i].actions.size(); ++a) {
            const PlainSubscription& subscription = subscriptions[i];
            if (!subscription.isStarted || subscription.unsubscribeRequested) break;
            if (!subscription.actions[a].isMarked) continue;
            if (!listener(i, subscription.actions[a].name)) return;
            subscriptions[i].actions[a].isMarked = false;
        }
        PlainSubscription& subscription = subscriptions[i];
        if (!subscription.unsubscribeRequested) return;
        subscription.isAlive = false;
        for (PlainAction& action : subscription.actions) action.isAttached = false;
    }
};

// What a listener does inside a call, chosen before it.
struct Deed {
    enum class Kind { Nothing, Fail, Unsubscribe, UnsubscribeOther, Register, Mark } kind = Kind::Nothing;
    std::size_t target = 0;
};

class CycleReference : public ManagerTest {
protected:
    struct Client {
        ListenerPtr listener = NewObject<RecordingListener>();
        SubscriptionPtr subscription;
        std::vector<ActionPtr> actions;  // whose marks the test sets; the regular one is known from its first call
    };

    void Register() {
        const std::size_t i = clients_.size();
        const std::uint32_t interval = Random(1, 5);
        const TimedActionSettings schedule{0, false, 0, TimedActionType::Repeat, interval};
        Client client;
        client.listener->onCall = [this, i](IActionSubscription&) { return OnCall(i); };
        client.listener->onAction = [this, i](IAction* action) {
            WideString name;
            EXPECT_EQ(action->GetName(&name), S_OK);
            ActionPtr& known = clients_[i].actions.front();
            if (!known && name == u"Schedule") known = QueryOrThrow<IActionControl>(ComponentPtr(action));
        };
        client.actions.emplace_back();
        EXPECT_EQ(manager_->SubscribeRegularAction(client.listener.Get(), &schedule, client.subscription.Address()),
                  S_OK);
        clients_.push_back(std::move(client));
        PlainSubscription plain;
        plain.actions.push_back({"Schedule", std::chrono::milliseconds{interval},
                                 System.clock.load() + std::chrono::milliseconds{interval}, TimePoint{}});
        plain_.subscriptions.push_back(std::move(plain));
    }
    void AttachForeignAction(std::size_t i) {
        if (!plain_.subscriptions[i].isAlive) return;
        const std::string name = "foreign" + std::to_string(clients_[i].actions.size());
        const ActionPtr action = Create<ActionImpl, IActionControl>();
        EXPECT_EQ(action->SetNameAndType(WideString(name.begin(), name.end()), ScheduleActionType), S_OK);
        EXPECT_EQ(QueryOrThrow<IActionSubscriptionControl>(clients_[i].subscription)->SetAction(action.Get()), S_OK);
        clients_[i].actions.push_back(action);
        plain_.subscriptions[i].actions.push_back({.name = name, .isRegular = false});
    }
    void Mark(std::size_t i, std::size_t a, bool mark) {
        if (a >= clients_[i].actions.size() || !clients_[i].actions[a]) return;
        EXPECT_EQ(clients_[i].actions[a]->SetTriggered(mark), S_OK);
    }
    void DoRandomStep() {
        if (clients_.empty() || Random(0, 5) == 0) return Register();
        const std::size_t i = Random(0, static_cast<std::uint32_t>(clients_.size()) - 1);
        PlainSubscription& plain = plain_.subscriptions[i];
        switch (Random(0, 7)) {
            case 0:
            case 1:
                EXPECT_EQ(clients_[i].subscription->Start(), plain.isAlive ? S_OK : E_FAIL);
                plain.isStarted |= plain.isAlive;
                break;
            case 2:
                clients_[i].subscription->Unsubscribe();
                plain.unsubscribeRequested = true;
                break;
            case 3:
                AttachForeignAction(i);
                break;
            case 4: {
                const std::size_t a = Random(0, static_cast<std::uint32_t>(clients_[i].actions.size()) - 1);
                const bool mark = Random(0, 3) != 0;
                if (clients_[i].actions[a]) plain.actions[a].isMarked = mark;
                Mark(i, a, mark);
                break;
            }
            case 5:
                System.clock = System.clock.load() - std::chrono::milliseconds{Random(0, 10)} - Ticks{Random(0, 1)};
                break;
            default:
                System.clock = System.clock.load() + std::chrono::milliseconds{Random(0, 6)} + Ticks{Random(0, 1)};
        }
    }
    // One cycle of each. All listeners of the cycle do the same deed, at most one of them on another subscription.
    void CompareCycle() {
        deed_ = {static_cast<Deed::Kind>(Random(0, 9) < 5 ? Random(0, 5) : 0),
                 Random(0, static_cast<std::uint32_t>(clients_.size()) - 1)};
        if (!clients_[deed_.target].actions.front()) deed_.kind = Deed::Kind::Nothing;  // its action is not known yet
        const TimePoint now = System.clock;
        calls_.clear();
        manager_->OnTimerEvent(now);
        Calls expected;
        plain_.Run(now, [&](std::size_t i, const std::string& action) {
            expected.emplace_back(i, action);
            PlainSubscription& own = plain_.subscriptions[i];
            PlainSubscription& target = plain_.subscriptions[deed_.target];
            if (deed_.kind == Deed::Kind::Unsubscribe) own.unsubscribeRequested = true;
            if (deed_.kind == Deed::Kind::UnsubscribeOther) target.unsubscribeRequested = true;
            if (deed_.kind == Deed::Kind::Mark) target.actions.front().isMarked = true;
            return deed_.kind != Deed::Kind::Fail;
        });
        ASSERT_EQ(calls_, expected);
        for (std::size_t i = 0; i < clients_.size(); ++i) {
            bool alive = false;
            EXPECT_EQ(QueryOrThrow<IActionSubscriptionControl>(clients_[i].subscription)->IsAlive(&alive), S_OK);
            ASSERT_EQ(alive, plain_.subscriptions[i].isAlive) << i;
            for (std::size_t a = 0; a < clients_[i].actions.size(); ++a) {
                bool marked = false, disposed = false;
                if (!clients_[i].actions[a]) continue;
                EXPECT_EQ(clients_[i].actions[a]->GetTriggered(&marked), S_OK);
                ASSERT_EQ(marked, plain_.subscriptions[i].actions[a].isMarked) << i << ' ' << a;
                EXPECT_EQ(clients_[i].actions[a]->IsDisposed(&disposed), S_OK);
                ASSERT_EQ(disposed, !plain_.subscriptions[i].actions[a].isAttached) << i << ' ' << a;
            }
        }
    }
    HRESULT OnCall(std::size_t i) {
        calls_.emplace_back(i, clients_[i].listener->TakeCalls().back());
        if (deed_.kind == Deed::Kind::Unsubscribe) clients_[i].subscription->Unsubscribe();
        if (deed_.kind == Deed::Kind::UnsubscribeOther) clients_[deed_.target].subscription->Unsubscribe();
        if (deed_.kind == Deed::Kind::Register && i == deed_.target) Register();  // not due in this cycle
        if (deed_.kind == Deed::Kind::Mark) Mark(deed_.target, 0, true);
        if (deed_.kind == Deed::Kind::Fail) ThrowError(E_ABORT);
        return S_OK;
    }
    void RunSequence(std::uint32_t seed) {
        random_.seed(seed);
        clients_.clear();
        plain_ = {};
        manager_ = NewObject<ActionManager>();
        System.clock = Creation;
        for (int step = 0; step < 120 && !HasFatalFailure(); ++step) {
            DoRandomStep();
            if (Random(0, 2) == 0) CompareCycle();
        }
    }
    std::uint32_t Random(std::uint32_t from, std::uint32_t to) {
        return std::uniform_int_distribution<std::uint32_t>(from, to)(random_);
    }

    std::mt19937 random_;
    std::vector<Client> clients_;
    PlainCycle plain_;
    Deed deed_;
    Calls calls_;
};

}  // namespace

TEST_F(CycleReference, IsFollowedInEverySequenceWhetherTracedOrNot) {
    for (const bool isTraced : {false, true}) {
        CapturedLog log(isTraced ? "DBG2" : "NONE");
        const std::uint32_t sequences = isTraced ? 50 : 2000;
        for (std::uint32_t seed = 0; seed < sequences; ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            RunSequence(seed);
            ASSERT_FALSE(HasFailure());
        }
    }
    clients_.clear();
}
