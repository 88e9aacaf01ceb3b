#include <sys/resource.h>

#include <cstdio>

#include "DataCollection/TriggerStrategy.h"
#include "Harbor/ConfigService.h"
#include "LoadedModule.h"

namespace {

// Ids as the contract states them, independent of the headers.
GUID Id(const char* text) {
    GUID id{};
    auto& d = id.Data4;
    EXPECT_EQ(std::sscanf(text, "%8x-%4hx-%4hx-%2hhx%2hhx-%2hhx%2hhx%2hhx%2hhx%2hhx%2hhx", &id.Data1, &id.Data2,
                          &id.Data3, &d[0], &d[1], &d[2], &d[3], &d[4], &d[5], &d[6], &d[7]),
              11);
    return id;
}

constexpr GUID Unknown = IComponentUnknown::Id;
constexpr GUID Configurable = IConfigurable::Id;
constexpr GUID Manager = IActionManager::Id;
constexpr GUID Strategy = ITriggerStrategy::Id;

struct CreatableClass {
    GUID id;
    std::vector<GUID> interfaces;
};
constexpr GUID ManagerClass = ActionManagerClassId;
const CreatableClass CreatableClasses[] = {{ManagerClass, {Unknown, Configurable, Manager}},
                                           {ScopeItemUpdateStrategyClassId, {Unknown, Strategy}},
                                           {DefaultTriggerStrategyClassId, {Unknown, Strategy}}};

class ModuleTest : public StoreTest {};

IComponentUnknown* View(void* created) {
    return static_cast<IComponentUnknown*>(created);
}

TEST_F(ModuleTest, HasTheIdsOfTheContract) {
    const std::pair<const char*, GUID> rows[] = {
        {"51C3FBA2-85FE-436B-A0FF-1C61A5C0C585", IComponentUnknown::Id},
        {"989524A9-625D-48C8-AB03-7C084EB5265D", IComponentsModule::Id},
        {"9FD0681A-A35D-48EF-A226-DE3846E19D38", IConfigurable::Id},
        {"B3BE9604-1352-4DAB-B413-D37764C0CE97", IACConfigService::Id},
        {"BE6B7491-D5F0-4048-9EED-D39DCD3A8019", IActionManager::Id},
        {"9D99BD2E-4CE8-4842-AB52-F558D8BA1C09", IActionSubscription::Id},
        {"BB0A24E7-046F-4C73-ABBD-EFF78EC80D79", IActionSubscriptionControl::Id},
        {"2DCDD284-1529-4AD8-B989-AC31EA82FC95", IAction::Id},
        {"7C98DB43-5C95-4986-85C1-C7FBF141A002", IActionControl::Id},
        {"2A4534DD-1230-469A-9FE4-8328CC888656", ITriggerStrategy::Id},
        {"2499B637-F51F-44EF-8A1E-2E050AE1D037", ScheduleActionType},
        {"4DFD3238-E4EF-4D0D-A2E7-A52CAA939110", ForcedStartActionType},
        {"D152D3FF-88C9-4CCD-BFF9-742CD06B846B", ForcedStopActionType},
        {"BAD21ACC-2805-4DA8-B9AF-A49CBDE16D5A", ActionManagerClassId},
        {"F69D31FB-90B0-46CD-9C48-20D95CF821C4", ScopeItemUpdateStrategyClassId},
        {"AB457E1C-F8B0-4982-8DFA-295B4C550145", DefaultTriggerStrategyClassId},
    };
    for (const auto& [text, id] : rows) EXPECT_EQ(id, Id(text)) << text;
}

TEST_F(ModuleTest, HasAnObjectWithoutAReferenceCount) {
    const LoadedModule module;
    void* result = nullptr;
    EXPECT_EQ(module->QueryInterface(&IComponentsModule::Id, &result), S_OK);
    EXPECT_EQ(result, module.Object());
    EXPECT_EQ(module->QueryInterface(&IComponentUnknown::Id, &result), S_OK);
    EXPECT_EQ(View(result)->AddRef(), 0xFFFFFFFF);
    EXPECT_EQ(module->Release(), 0xFFFFFFFF);
    EXPECT_EQ(module->NoOperation(), S_OK);
    void* const before = result;
    EXPECT_EQ(module->QueryInterface(&IActionManager::Id, &result), E_NOINTERFACE);
    EXPECT_EQ(module->QueryInterface(nullptr, &result), E_INVALIDARG);
    EXPECT_EQ(module->QueryInterface(&IComponentsModule::Id, nullptr), E_INVALIDARG);
    EXPECT_EQ(module->IsModuleLocked(nullptr), E_POINTER);
    EXPECT_EQ(result, before);
}

TEST_F(ModuleTest, DeletesAnObjectAtItsLastReleaseOnAnyInterfaceAndThread) {
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
            std::jthread([&] { EXPECT_EQ(View(created)->Release(), 0u); }).join();
            EXPECT_EQ(module.LiveObjects(), 0u);
        }
    }
}

TEST_F(ModuleTest, RejectsWhatItCannotCreateAndLeavesNoObject) {
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

TEST_F(ModuleTest, IsConfiguredWithoutAFreeFileDescriptor) {
    if (Sanitized) GTEST_SKIP() << "the checks of a sanitizer need descriptors";
    const LoadedModule module("DBG");
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    testing::internal::CaptureStderr();
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    {
        const auto manager = module.Create();
        EXPECT_EQ(Configure(manager, 1), S_OK);
    }
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::MatchesRegex("FileLogger: cannot open log file '.*' \\(error: 0x80070004\\)\n"
                                      "FileLogger: the system's own error is 24 \\(Too many open files\\)\n"));
}

// Every other time with the log, which creates the objects that only the log and failures need, and opens its file.
TEST_F(ModuleTest, IsUnmappedAtEachOfManyUnloads) {
    const auto descriptors = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    const auto before = descriptors();
    for (int loads = Sanitized ? 50 : 1000; loads > 0 && !HasFailure(); --loads) {
        LoadedModule module(loads % 2 == 0 ? "DBG3" : "NONE");
        Listener listener;
        const auto strategy = module.Create<ITriggerStrategy>(ScopeItemUpdateStrategyClassId);
        auto manager = module.Create();
        EXPECT_EQ(Configure(manager, 0), S_OK);
        SubscriptionPtr none;
        const TimedActionSettings invalid = Every(0);
        EXPECT_EQ(manager->SubscribeRegularAction(&listener, &invalid, none.Address()), E_INVALIDARG);
        const auto subscription = Subscribe(manager, listener, Every(1));
        EXPECT_EQ(subscription->Start(), S_OK);
        EXPECT_TRUE(loads % 10 != 0 || listener.AwaitCalls(1));
        EXPECT_EQ(subscription->Unsubscribe(), S_OK);
        std::jthread([&] { manager.Reset(); }).join();
        EXPECT_EQ(CountOf("The parameter is incorrect", module.Log()), loads % 2 == 0 ? 1u : 0u);
    }
    EXPECT_EQ(descriptors(), before);
}

}  // namespace
