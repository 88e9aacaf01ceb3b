#include <cstddef>

#include "DataCollection/TriggerStrategy.h"
#include "Harbor/ConfigService.h"
#include "LoadedModule.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Calls a method only by its place in the table, as a client of another compiler does.
template <class Result = HRESULT, class... Arguments>
Result Call(void* object, std::size_t slot, Arguments... arguments) {
    void* const* const table = *static_cast<void* const**>(object);
    return reinterpret_cast<Result (*)(void*, Arguments...)>(table[slot])(object, arguments...);
}

bool Read(void* object, std::size_t slot) {
    bool flag = false;
    EXPECT_EQ(Call(object, slot, &flag), S_OK);
    return flag;
}

// Checks the three methods with which every interface begins.
void CheckBaseSlots(std::initializer_list<void*> views) {
    for (void* const view : views) {
        const auto count = Call<std::uint32_t>(view, 0);
        EXPECT_EQ(Call<std::uint32_t>(view, 1), count - 1);
        void* root = nullptr;
        ASSERT_EQ(Call(view, 2, &IComponentUnknown::Id, &root), S_OK);
        EXPECT_EQ(Call<std::uint32_t>(root, 1), count - 1);
    }
}

class SlotTest : public StoreTest {};

// Returns a delivered action, for direct calls, whose manager has been deleted.
ComponentPtr<IAction> TakeAction(const LoadedModule& module) {
    const auto manager = module.Create();
    Listener listener;
    ComponentPtr<IAction> action;
    listener.onCall = [&](IActionSubscription& subscription, IAction& delivered) {
        action.Reset(&delivered);
        EXPECT_EQ(Call(&subscription, 4), S_OK);  // Unsubscribe
    };
    const TimedActionSettings schedule = Every(1);
    SubscriptionPtr subscription;
    EXPECT_EQ(Call(manager.Get(), 3, &listener, &schedule, subscription.Address()), S_OK);
    EXPECT_EQ(Call(subscription.Get(), 3), S_OK);  // Start
    EXPECT_EQ(Configure(manager, 1), S_OK);
    EXPECT_TRUE(listener.AwaitCalls(1) && listener.AwaitDetached());
    return action;
}

TEST_F(SlotTest, FindsEachMethodAtItsPlaceInTheTable) {
    LoadedModule module;
    const auto action = TakeAction(module);
    GUID type{};
    WideString name;
    EXPECT_EQ(Call(action.Get(), 3, &type), S_OK);
    EXPECT_EQ(Call(action.Get(), 4, &name), S_OK);
    EXPECT_EQ(type, ScheduleActionType);
    EXPECT_EQ(name, u"Schedule");

    const auto mark = QueryOrThrow<IActionControl>(action);
    name = u"Other";
    EXPECT_EQ(Call(mark.Get(), 3, &name, &ForcedStartActionType), S_OK);  // SetNameAndType
    EXPECT_TRUE(Read(mark.Get(), 4));                                     // IsDisposed
    EXPECT_EQ(Call(mark.Get(), 5), S_OK);                                 // OnSubscriptionAttached
    EXPECT_FALSE(Read(mark.Get(), 4));
    EXPECT_EQ(Call(mark.Get(), 6), S_OK);  // OnSubscriptionDisposed
    EXPECT_TRUE(Read(mark.Get(), 4));
    EXPECT_FALSE(Read(mark.Get(), 8));           // GetTriggered
    EXPECT_EQ(Call(mark.Get(), 7, true), S_OK);  // SetTriggered
    EXPECT_TRUE(Read(mark.Get(), 8));

    // Without a worker the test itself runs the subscription.
    const auto manager = module.Create();
    const auto configurable = QueryOrThrow<IConfigurable>(manager);
    EXPECT_EQ(Call(configurable.Get(), 3, nullptr), E_FAIL);  // Configure
    Listener first, second;
    const ForcedActionConfig point{u"Leaf", u"Parent", false};
    SubscriptionPtr subscription;
    EXPECT_EQ(Call(manager.Get(), 4, &first, &point, subscription.Address()), NOT_FOUND);  // without a service
    subscription = Subscribe(manager, first, Every(1));
    const auto control = QueryOrThrow<IActionSubscriptionControl>(subscription);
    EXPECT_EQ(Call(control.Get(), 3, &second), S_OK);  // SetListener
    EXPECT_TRUE(first.AwaitDetached());
    EXPECT_EQ(Call(control.Get(), 4, mark.Get()), S_OK);  // SetAction
    EXPECT_FALSE(Read(mark.Get(), 4));
    EXPECT_EQ(Call(subscription.Get(), 3), S_OK);
    EXPECT_EQ(Call(control.Get(), 6), S_OK);  // TriggerActionsIfNeeded
    EXPECT_THAT(second.Names(), ElementsAre("Other"));
    EXPECT_TRUE(Read(control.Get(), 5));  // IsAlive
    EXPECT_EQ(Call(subscription.Get(), 4), S_OK);
    EXPECT_EQ(Call(control.Get(), 6), S_OK);
    EXPECT_FALSE(Read(control.Get(), 5));

    const NodePtr empty = NewNode(u"Config"), full = NewNode(u"Config");
    AddChild(full, u"ScopeItems");
    const auto strategy = module.Create<ITriggerStrategy>(ScopeItemUpdateStrategyClassId);
    EXPECT_EQ(Call(strategy.Get(), 3, empty.get(), full.get()), S_OK);     // triggers
    EXPECT_EQ(Call(strategy.Get(), 3, full.get(), empty.get()), S_FALSE);  // does not trigger
    EXPECT_EQ(Call(strategy.Get(), 4, nullptr), S_OK);                     // ReservedOperation
    CheckBaseSlots({manager.Get(), configurable.Get(), subscription.Get(), control.Get(), action.Get(), mark.Get(),
                    strategy.Get()});
}

}  // namespace
