#include <regex>

#include "Common/Base/HRes.h"
#include "LoadedModule.h"

namespace {

// Uses the real clock.
class ScheduleTest : public StoreTest {};

using ThisSystem::Threads;

TEST_F(ScheduleTest, EndsItsThreadAndCallsAtTheLastReleaseOfTheManager) {
    LoadedModule module;
    JoiningThread([] {}).Join();  // the libraries of some builds start a thread together with the first one
    const std::size_t threads = Threads();
    Listener listener;
    auto manager = module.Create();
    auto subscription = Subscribe(manager, listener, Every(1));
    EXPECT_EQ(subscription->Start(), S_OK);
    EXPECT_EQ(Configure(manager, 0), S_OK);
    EXPECT_TRUE(listener.AwaitCalls(3));
    EXPECT_EQ(Threads(), threads + 1);
    manager.Reset();
    const std::size_t calls = listener.Names().size();
    EXPECT_TRUE(Await([&] { return Threads() == threads; }));
    subscription.Reset();
    module.Unload();
    EXPECT_EQ(listener.Names().size(), calls);
    EXPECT_TRUE(listener.AwaitDetached());
}

TEST_F(ScheduleTest, ReportsAFailureWithItsCodeTextAndAddresses) {
    LoadedModule module;
    const auto manager = module.Create();
    Listener listener;
    IActionSubscription* const untouched = reinterpret_cast<IActionSubscription*>(&module);
    IActionSubscription* subscription = untouched;
    // The text of the thread's error object, with the addresses of this call after the module's.
    const auto refusal = [&](IActionListener* called, const TimedActionSettings& schedule) {
        return Narrow(HRES::Unchecked(manager->SubscribeRegularAction(called, &schedule, &subscription)).ToText());
    };
    const auto matches = [](const std::string& text, const std::string& code) {
        return std::regex_match(text,
                                std::regex(code + R"( [^[]+ \[0x[0-9A-F]+,0x[0-9A-F]+;0x[0-9A-F]+,0x[0-9A-F]+\])"));
    };
    for (const TimedActionSettings& bad : {Every(0),
                                           {0, false, 7, TimedActionType::SpecificTime, 0},
                                           {86400, false, 60, TimedActionType::SpecificTime, 0},
                                           {0, false, 60, TimedActionType{2}, 0},
                                           {0, false, 4294968, TimedActionType::Repeat, 0}}) {
        EXPECT_TRUE(matches(refusal(&listener, bad), "0x80070057"));
    }
    EXPECT_TRUE(matches(refusal(nullptr, Every(1)), "0x80004003"));
    EXPECT_EQ(subscription, untouched);
    EXPECT_EQ(module.LiveObjects(), 1u);
    EXPECT_TRUE(listener.AwaitDetached());
}

}  // namespace
