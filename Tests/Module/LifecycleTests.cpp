#include <cstdio>

#include "DataCollection/TriggerStrategy.h"
#include "LoadedModule.h"

namespace {

// Ids as the contract writes them, not as the headers have them.
GUID Id(const char* text) {
    GUID id{};
    auto& d = id.Data4;
    EXPECT_EQ(std::sscanf(text, "%8x-%4hx-%4hx-%2hhx%2hhx-%2hhx%2hhx%2hhx%2hhx%2hhx%2hhx", &id.Data1, &id.Data2,
                          &id.Data3, &d[0], &d[1], &d[2], &d[3], &d[4], &d[5], &d[6], &d[7]),
              11);
    return id;
}

const GUID Unknown = Id("51C3FBA2-85FE-436B-A0FF-1C61A5C0C585");
const GUID Configurable = Id("9FD0681A-A35D-48EF-A226-DE3846E19D38");
const GUID Manager = Id("BE6B7491-D5F0-4048-9EED-D39DCD3A8019");
const GUID Strategy = Id("2A4534DD-1230-469A-9FE4-8328CC888656");

struct CreatableClass {
    GUID id;
    std::vector<GUID> interfaces;
};
const GUID ManagerClass = Id("BAD21ACC-2805-4DA8-B9AF-A49CBDE16D5A");
const CreatableClass CreatableClasses[] = {{ManagerClass, {Unknown, Configurable, Manager}},
                                           {Id("F69D31FB-90B0-46CD-9C48-20D95CF821C4"), {Unknown, Strategy}},
                                           {Id("AB457E1C-F8B0-4982-8DFA-295B4C550145"), {Unknown, Strategy}}};

class ModuleTest : public StoreTest {};

IComponentUnknown* View(void* created) {
    return static_cast<IComponentUnknown*>(created);
}

TEST_F(ModuleTest, EndsAnObjectWithTheLastReleaseOnWhicheverInterface) {
    LoadedModule module;
    for (const auto& [classId, interfaces] : CreatableClasses) {
        for (const GUID& last : interfaces) {
            void* created = nullptr;
            ASSERT_EQ(module->CreateInstance(&classId, &last, &created), S_OK);
            EXPECT_EQ(module.LiveObjects(), 1u);
            for (const GUID& other : interfaces) {
                void *queried = nullptr, *back = nullptr;
                ASSERT_EQ(View(created)->QueryInterface(&other, &queried), S_OK);
                EXPECT_EQ(View(queried)->QueryInterface(&last, &back), S_OK);
                EXPECT_EQ(back, created);
                EXPECT_EQ(View(queried)->AddRef(), 4u);
                for (std::uint32_t left : {3u, 2u, 1u}) EXPECT_EQ(View(queried)->Release(), left);
            }
            EXPECT_EQ(View(created)->Release(), 0u);
            EXPECT_EQ(module.LiveObjects(), 0u);
        }
    }
}

TEST_F(ModuleTest, RefusesWhatItCannotCreateAndEndsWhatItBuiltForIt) {
    LoadedModule module("DBG");
    const GUID noClass = Id("00000000-0000-0000-0000-000000000001");
    void* const untouched = &module;
    void* result = untouched;
    EXPECT_EQ(module->CreateInstance(&noClass, &Unknown, &result), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(module->CreateInstance(&noClass, nullptr, nullptr), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(module.Log(), "");
    EXPECT_EQ(module->CreateInstance(&ManagerClass, &Strategy, &result), E_NOINTERFACE);
    EXPECT_EQ(module->CreateInstance(&ManagerClass, nullptr, &result), E_INVALIDARG);
    EXPECT_EQ(module->CreateInstance(&ManagerClass, &Manager, nullptr), E_INVALIDARG);
    EXPECT_EQ(result, untouched);
    EXPECT_EQ(module.LiveObjects(), 0u);

    EXPECT_EQ(CountOf("| Entering: DataCollection::ActionManagement::ActionManager::FinalRelease\r\n", module.Log()),
              3u);
}

TEST_F(ModuleTest, LeavesMemoryAtEachOfManyUnloads) {
    for (int loads = Sanitized ? 50 : 1000; loads > 0 && !HasFailure(); --loads) {
        LoadedModule module;
        Listener listener;
        const auto strategy = module.Create<ITriggerStrategy>(ScopeItemUpdateStrategyClassId);
        const auto manager = module.Create();
        EXPECT_EQ(Configure(manager, 0), S_OK);
        const auto subscription = Subscribe(manager, listener, Every(1));
        EXPECT_EQ(subscription->Start(), S_OK);
        EXPECT_TRUE(loads % 10 != 0 || listener.AwaitCalls(1));
        EXPECT_EQ(subscription->Unsubscribe(), S_OK);
    }
}

}  // namespace
