// Receives the commands that an operator writes to a command point in the configuration service.
#include <cstdio>
#include <semaphore>

#include "ConfigServer/ConfigServer.h"
#include "DataCollection/CreateActionManager.h"
#include "Harbor/Object.h"
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
    if (argc != 2) return std::fprintf(stderr, "usage: ForcedAction /path/to/OrvActionManager.so\n"), 2;
    // A real installation has a configuration service. Here the host creates one and publishes it at the broker, under
    // the name that the manager uses.
    const auto service = ConfigServer::CreateConfigServer();
    Harbor::ThrowIfFailed(MBSetNamedInstance(Harbor::ConfigServiceInstanceName, service.Get()), "MBSetNamedInstance");
    const Harbor::Module module = Harbor::Module::Load(argv[1]);
    const auto listener = Harbor::MakeObject<Line1>();
    const auto manager = CreateActionManager(module, 10);

    const ForcedActionConfig point{.LeafName = u"Line1", .ParentName = u"Plant"};
    Harbor::ComponentPtr<IActionSubscription> line1;
    Harbor::ThrowIfFailed(manager->SubscribeForcedAction(listener.Get(), &point, line1.Address()), "Subscribe");
    Harbor::ThrowIfFailed(line1->Start(), "Start");

    // The operator. Of several commands in one cycle only the last is delivered, so each waits for the one before.
    for (const char16_t* const command : {u"Start", u"Stop"}) {
        const auto path = Harbor::WideString(CommandPointRoot) + u"\\Plant\\Line1\\Order";
        Harbor::ThrowIfFailed(service->WriteNode(path, {{u"Command", command}}), "WriteNode");
        listener->called.acquire();
    }
    return MBSetNamedInstance(Harbor::ConfigServiceInstanceName, nullptr);
} catch (const std::exception& failure) {
    return std::fprintf(stderr, "%s\n", failure.what()), 1;
}
