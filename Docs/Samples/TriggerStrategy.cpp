// Asks whether a change of the configuration requires a run.
//
//     TriggerStrategy /path/to/OrvActionManager.so
#include <cstdio>
#include <initializer_list>

#include "DataCollection/TriggerStrategy.h"
#include "Host.h"
#include "NodeFabric/Authoring.h"

// Returns a configuration: a root with a child "ScopeItems", which has a child for each thing that is collected. The
// caller closes the handle.
AcnHandle MakeConfiguration(std::initializer_list<const char16_t*> items) {
    AcnHandle root = nullptr, scope = nullptr;
    Check(AcnCreateNode(u"Configuration", nullptr, &root), "AcnCreateNode");
    Check(AcnCreateNode(u"ScopeItems", nullptr, &scope), "AcnCreateNode");
    Check(AcnAppendChild(root, scope), "AcnAppendChild");
    for (const char16_t* const name : items) {
        AcnHandle item = nullptr;
        Check(AcnCreateNode(name, nullptr, &item), "AcnCreateNode");
        Check(AcnAppendChild(scope, item), "AcnAppendChild");
        AcnCloseNodeHandle(item);  // the tree keeps the node
    }
    AcnCloseNodeHandle(scope);
    return root;
}

int main(int, char** argv) try {
    const Host host(argv[1]);
    const auto strategy = host.Create<DataCollection::ITriggerStrategy>(DataCollection::ScopeItemUpdateStrategyClassId);
    AcnHandle before = MakeConfiguration({u"Boiler", u"Pump"});
    AcnHandle same = MakeConfiguration({u"Boiler", u"Pump"});
    AcnHandle after = MakeConfiguration({u"Boiler", u"Pump", u"Valve"});

    // S_OK means yes, S_FALSE no; a negative code is a failure.
    const auto print = [&](const char* what, AcnHandle newConfig) {
        const Harbor::HRESULT answer = strategy->OnConfigurationUpdate(before, newConfig);
        Check(answer, "OnConfigurationUpdate");
        std::printf("%s: %s\n", what, answer == Harbor::S_OK ? "run" : "no run");
    };
    print("nothing changed", same);
    print("a valve was added", after);

    for (AcnHandle tree : {before, same, after}) AcnCloseNodeHandle(tree);
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
