// The end of the module in every order of its clients, its worker and the host that unloads it.
#include "Interleaving/ExpectPromises.h"
#include "LoadedModule.h"

// The leak detector would read the thread storage of the library after its unload, since the threads of the runs are
// kept. The other tests of the module look for leaks.
extern "C" PLATFORM_EXPORT int __lsan_is_turned_off() {
    return 1;
}

TEST(UnloadInterleavings, OfTheUnloadWithClientsAndCycles) {
    Interleaving::ExpectPromisesKept([] {
        Listener one, two;
        two.onCall = [](IActionSubscription& subscription, IAction&) { subscription.Unsubscribe(); };
        LoadedModule module;
        {
            ManagerPtr manager = module.Create();
            EXPECT_EQ(Configure(manager, static_cast<std::uint32_t>(Interleaving::Choose(2))), S_OK);
            const Interleaving::RunThread client([&, own = manager]() mutable {
                SubscriptionPtr subscription = Subscribe(own, two, Every(1));
                EXPECT_EQ(subscription->Start(), S_OK);
                Interleaving::WaitUntil("the client's call", [&] { return two.Calls() > 0; });
                own.Reset();
                subscription.Reset();
            });
            SubscriptionPtr subscription = Subscribe(manager, one, Every(1));
            EXPECT_EQ(subscription->Start(), S_OK);
            EXPECT_EQ(subscription->Unsubscribe(), S_OK);
            manager.Reset();
        }
        module.Unload();
        Interleaving::Require(one.AwaitDetached() && two.AwaitDetached(), "each listener is let go before the unload");
    });
}
