// Asks whether a change of the configuration requires a run.
#include <cstdio>
#include <initializer_list>

#include "DataCollection/TriggerStrategy.h"
#include "Harbor/Module.h"
#include "Harbor/Nodes.h"
#include "NodeFabric/Authoring.h"

// Returns a configuration: a root with a child "ScopeItems", which has a child for each thing that is collected.
Harbor::NodeHandle MakeConfiguration(std::initializer_list<const char16_t*> items) {
    Harbor::NodeHandle root = Harbor::NewNode(u"Configuration");
    const Harbor::NodeHandle scope = Harbor::NewNode(u"ScopeItems");
    Harbor::ThrowIfFailed(AcnAppendChild(root.get(), scope.get()), "AcnAppendChild");
    for (const char16_t* const name : items) {
        const Harbor::NodeHandle item = Harbor::NewNode(name);
        Harbor::ThrowIfFailed(AcnAppendChild(scope.get(), item.get()), "AcnAppendChild");
    }
    return root;  // the tree keeps the nodes whose handles are closed here
}

int main(int argc, char** argv) try {
    if (argc != 2) return std::fprintf(stderr, "usage: TriggerStrategy /path/to/OrvActionManager.so\n"), 2;
    using namespace DataCollection;
    const Harbor::Module module = Harbor::Module::Load(argv[1]);
    const auto strategy = Harbor::Create<ITriggerStrategy>(module, ScopeItemUpdateStrategyClassId);
    const Harbor::NodeHandle before = MakeConfiguration({u"Boiler", u"Pump"});

    // S_OK means yes, S_FALSE no; a negative code is a failure.
    const auto print = [&](const char* what, const Harbor::NodeHandle& after) {
        const Harbor::HRESULT answer = strategy->OnConfigurationUpdate(before.get(), after.get());
        Harbor::ThrowIfFailed(answer, "OnConfigurationUpdate");
        std::printf("%s: %s\n", what, answer == Harbor::S_OK ? "run" : "no run");
    };
    print("nothing changed", MakeConfiguration({u"Boiler", u"Pump"}));
    print("a valve was added", MakeConfiguration({u"Boiler", u"Pump", u"Valve"}));
    print("the pump was removed", MakeConfiguration({u"Boiler"}));
    return 0;
} catch (const std::exception& failure) {
    return std::fprintf(stderr, "%s\n", failure.what()), 1;
}
