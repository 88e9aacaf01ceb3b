// Publishes the service of ConfigurationService.h at the broker and has the module watch a command point in it.
#include "ConfigurationService.h"

#include <cstdio>
#include <semaphore>
#include <thread>

#include "DataCollection/CreateActionManager.h"
#include "ModuleBroker/Registration.h"

using namespace DataCollection::ActionManagement;

class Line1 final : public Harbor::Object<IActionListener> {
public:
    Harbor::HRESULT OnActionTriggered(IActionSubscription*, DataCollection::IAction* action) noexcept override {
        Harbor::WideString name;
        const Harbor::HRESULT code = action->GetName(&name);
        std::puts(name == u"ForcedStart" ? "started" : "stopped");
        called.release();
        return code;
    }
    std::binary_semaphore called{0};
};

int main(int argc, char** argv) try {
    if (argc != 2) return std::fprintf(stderr, "usage: ConfigurationService /path/to/OrvActionManager.so\n"), 2;
    const auto service = Harbor::MakeObject<ConfigurationService>();
    Harbor::ThrowIfFailed(MBSetNamedInstance(Harbor::ConfigServiceInstanceName, service.Get()), "MBSetNamedInstance");
    const Harbor::Module module = Harbor::Module::Load(argv[1]);
    const auto listener = Harbor::MakeObject<Line1>();
    const auto manager = CreateActionManager(module, 10);

    const ForcedActionConfig point{.LeafName = u"Line1", .ParentName = u"Plant"};
    Harbor::ComponentPtr<IActionSubscription> line1;
    Harbor::ThrowIfFailed(manager->SubscribeForcedAction(listener.Get(), &point, line1.Address()), "Subscribe");
    Harbor::ThrowIfFailed(line1->Start(), "Start");
    for (const char16_t* const command : {u"Start", u"Stop"}) {
        service->Write(Harbor::WideString(CommandPointRoot) + u"\\Plant\\Line1\\Order", u"Command", command);
        listener->called.acquire();
    }

    Harbor::ThrowIfFailed(line1->Unsubscribe(), "Unsubscribe");
    while (service->WatchCount() != 0) std::this_thread::yield();  // the worker removes the watch within two cycles
    std::puts("no watch is left");
    return MBSetNamedInstance(Harbor::ConfigServiceInstanceName, nullptr);
} catch (const std::exception& failure) {
    return std::fprintf(stderr, "%s\n", failure.what()), 1;
}
