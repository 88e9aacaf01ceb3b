// Receives the commands that an operator writes to a command point in the configuration service.
//
//     ForcedAction /path/to/OrvActionManager.so
#include <cstdio>
#include <semaphore>

#include "ConfigServer/ConfigServer.h"
#include "Host.h"
#include "Listener.h"
#include "ModuleBroker/Registration.h"

using namespace DataCollection::ActionManagement;

int main(int, char** argv) try {
    // A real installation has a configuration service. Here the host creates one and publishes it at the broker, under
    // the name that the manager uses.
    const auto service = ConfigServer::CreateConfigServer();
    Check(MBSetNamedInstance(Harbor::ConfigServiceInstanceName, service.Get()), "MBSetNamedInstance");

    const Host host(argv[1]);
    std::binary_semaphore heard(0);
    Listener listener([&](const std::u16string& action) {
        std::printf("%s\n", action == u"ForcedStart" ? "started" : "stopped");
        heard.release();
    });

    auto manager = host.Create<IActionManager>(ActionManagerClassId);
    Configure(manager, 10);

    const ForcedActionConfig line1{.LeafName = u"Line1", .ParentName = u"Plant", .WithOptionBit0 = false};
    Harbor::ComponentPtr<IActionSubscription> subscription;
    Check(manager->SubscribeForcedAction(&listener, &line1, subscription.Address()), "SubscribeForcedAction");
    Check(subscription->Start(), "Start");

    // The operator. Of several commands in one cycle only the last is delivered, so each waits for the one before.
    for (const char16_t* const command : {u"Start", u"Stop"}) {
        Check(service->WriteNode(u"\\Commands\\ManagedObjectsDataCollectionCommand\\Plant\\Line1\\Order",
                                 {{u"Command", command}}),
              "WriteNode");
        heard.acquire();
    }

    Check(subscription->Unsubscribe(), "Unsubscribe");
    subscription.Reset();
    manager.Reset();
    Check(MBSetNamedInstance(Harbor::ConfigServiceInstanceName, nullptr), "MBSetNamedInstance");
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
