// Is called every 200 ms, and ends after five calls.
//
//     RegularAction /path/to/OrvActionManager.so
#include <cstdio>
#include <latch>

#include "Host.h"
#include "Listener.h"

using namespace DataCollection::ActionManagement;

int main(int, char** argv) try {
    const Host host(argv[1]);
    std::latch calls(5);
    int number = 0;
    Listener listener([&](const std::u16string&) {
        if (number == 5) return;
        std::printf("call %d\n", ++number);
        calls.count_down();
    });

    auto manager = host.Create<IActionManager>(ActionManagerClassId);
    Configure(manager, 10);

    const TimedActionSettings everyFifthOfASecond{
        .StartSeconds = 0,
        .IsLocalTime = false,
        .IntervalSeconds = 0,
        .Type = TimedActionType::Repeat,
        .IntervalMilliseconds = 200,
    };
    Harbor::ComponentPtr<IActionSubscription> subscription;
    Check(manager->SubscribeRegularAction(&listener, &everyFifthOfASecond, subscription.Address()),
          "SubscribeRegularAction");
    Check(subscription->Start(), "Start");  // from now on the listener is called

    calls.wait();
    Check(subscription->Unsubscribe(), "Unsubscribe");
    subscription.Reset();
    manager.Reset();  // the last reference: after this no call runs or comes
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
