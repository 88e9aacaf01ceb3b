#include "Common/Components/CComponentObject.h"
#include "Common/Format.h"
#include "Stage.h"

using Stage::CodeThrownBy;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::IsEmpty;

// The linker's bounds of the two sections that functions below have for themselves.
extern const char trackingStart[] asm("__start_tracking_function");
extern const char trackingStop[] asm("__stop_tracking_function");
extern const char callerStart[] asm("__start_tracking_caller");
extern const char callerStop[] asm("__stop_tracking_caller");

namespace Harbor {
namespace {

struct IFirst : IComponentUnknown {
    static constexpr GUID Id{1, 2, 3, {4}};
    virtual int First() = 0;
};
struct ISecond : IComponentUnknown {
    static constexpr GUID Id{1, 2, 3, {5}};
    virtual int Second() = 0;
};
struct IHidden : IComponentUnknown {};
struct IUnlisted : IComponentUnknown {
    static constexpr GUID Id{1, 2, 3, {6}};
};

// What has happened to the objects of the test's class, and what shall happen to the next.
struct {
    int alive, finalReleases;
    HRESULT finalConstruct;
    bool constructorThrows;
} Objects{};

class Component : public ComponentRoot, public IFirst, public IHidden, public ISecond {
public:
    static constexpr const char* Tag = "CComponentObject<class Tests::Component>::CComponentObject";
    using Queryable = InterfaceList<IFirst, ISecond>;

    Component() {
        if (Objects.constructorThrows) ThrowError(E_ABORT);
        ++Objects.alive;
    }
    ~Component() override { --Objects.alive; }
    HRESULT FinalConstruct() { return Objects.finalConstruct; }
    void FinalRelease() {
        ++Objects.finalReleases;
        EXPECT_EQ(First() + Second(), 3) << "the object is still whole";
    }
    int First() override { return 1; }
    int Second() override { return 2; }
};
using Object = CComponentObject<Component>;

std::uint32_t References(IComponentUnknown* object) {
    object->AddRef();
    return object->Release();
}

class Components : public testing::Test {
protected:
    Components() { Objects = {}; }
    ~Components() override {
        EXPECT_EQ(Objects.alive, 0);
        EXPECT_EQ(Locked(), 0);
    }
    static std::int32_t Locked() {
        std::int32_t flag = -1;
        EXPECT_EQ(ComponentsModule::Instance().IsModuleLocked(&flag), S_OK);
        return flag;
    }
};

TEST_F(Components, KnowTheSameIdsThroughEachInterface) {
    Object* object = nullptr;
    ASSERT_EQ(Object::CreateObject(&object), S_OK);
    IComponentUnknown *const root = static_cast<ComponentRoot*>(object), *const first = static_cast<IFirst*>(object),
                             *const hidden = static_cast<IHidden*>(object),
                             *const second = static_cast<ISecond*>(object);
    for (IComponentUnknown* from : {root, first, hidden, second}) {
        for (const auto& [id, view] :
             {std::pair(&IComponentUnknown::Id, root), {&IFirst::Id, first}, {&ISecond::Id, second}}) {
            void* result = nullptr;
            EXPECT_EQ(from->QueryInterface(id, &result), S_OK);
            EXPECT_EQ(result, view);
            EXPECT_EQ(from->Release(), 1u) << "one reference was counted";
        }
        void* result = &Objects;
        EXPECT_EQ(from->QueryInterface(&IUnlisted::Id, &result), E_NOINTERFACE);
        EXPECT_EQ(from->QueryInterface(nullptr, &result), E_INVALIDARG);
        EXPECT_EQ(from->QueryInterface(&IFirst::Id, nullptr), E_INVALIDARG);
        EXPECT_EQ(result, &Objects);
        EXPECT_EQ(References(from), 1u);
    }
    object->Release();
}

TEST_F(Components, AreCreatedWithOneReferenceOrNotAtAll) {
    void* const before = &Objects;
    const struct {
        const GUID* id;
        HRESULT finalConstruct, code;
        int finalReleases;
    } rows[] = {{&IFirst::Id, S_OK, S_OK, 1},
                {&IComponentUnknown::Id, S_FALSE, S_OK, 1},
                {&IUnlisted::Id, S_OK, E_NOINTERFACE, 1},
                {nullptr, S_OK, E_INVALIDARG, 1},
                {&IFirst::Id, E_ABORT, E_ABORT, 0}};
    for (const auto& [id, finalConstruct, code, finalReleases] : rows) {
        Objects = {.alive = 0, .finalReleases = 0, .finalConstruct = finalConstruct, .constructorThrows = false};
        void* result = before;
        EXPECT_EQ(Object::CreateInstance(id, &result), code);
        EXPECT_EQ(result != before, Succeeded(code));
        EXPECT_EQ(Objects.alive, Succeeded(code) ? 1 : 0);
        EXPECT_EQ(Locked(), Objects.alive);
        if (Succeeded(code)) static_cast<IComponentUnknown*>(result)->Release();
        EXPECT_EQ(Objects.finalReleases, finalReleases);
    }
    Objects = {};
    EXPECT_EQ(References(Create<Component, ISecond>().Get()), 1u);
    EXPECT_EQ(CodeThrownBy([] { return Create<Component, IUnlisted>(); }), E_NOINTERFACE);
    Objects.constructorThrows = true;
    EXPECT_EQ(CodeThrownBy([] { return Create<Component, IFirst>(); }), E_ABORT);
}

TEST_F(Components, AreHeldByPointersThatCount) {
    using Pointer = ComponentPtr<IFirst>;
    Pointer a = Create<Component, IFirst>(), b = Create<Component, IFirst>();
    const Pointer first(a), second(b.Get(), false);
    const auto fill = [&](Pointer& pointer) {
        IFirst** const place = pointer.Address();
        EXPECT_EQ(*place, nullptr);
        EXPECT_EQ(second->QueryInterface(&IFirst::Id, reinterpret_cast<void**>(place)), S_OK);
    };
    const struct {
        std::function<void()> act;
        std::uint32_t firstCount, secondCount;  // without the two above
        const Pointer &inA, &inB;
    } steps[] = {{[&] { a = *&a; }, 1, 1, first, second},
                 {[&] { a = b; }, 0, 2, second, second},
                 {[&] { a.Reset(first.Get()); }, 1, 1, first, second},
                 {[&] { a = std::move(b); }, 0, 1, second, {}},
                 {[&] { a.Assign(std::move(*&a)); }, 0, 1, second, {}},
                 {[&] { b = Pointer(a.Detach(), true); }, 0, 1, {}, second},
                 {[&] { EXPECT_EQ(first.QueryTo(b), S_OK); }, 1, 0, {}, first},
                 {[&] { fill(b); }, 0, 1, {}, second},
                 {[&] { EXPECT_EQ(first.QueryTo(b, IUnlisted::Id), E_NOINTERFACE); }, 0, 1, {}, second},
                 {[&] { EXPECT_EQ(a.QueryTo(b), E_POINTER); }, 0, 1, {}, second},
                 {[&] { b.Reset(); }, 0, 0, {}, {}}};
    for (const auto& step : steps) {
        SCOPED_TRACE(&step - steps);
        step.act();
        EXPECT_EQ(References(first.Get()), 1 + step.firstCount);
        EXPECT_EQ(References(second.Get()), 1 + step.secondCount);
        EXPECT_EQ(a.Get(), step.inA.Get());
        EXPECT_EQ(b.Get(), step.inB.Get());
    }
    Pointer sole = Create<Component, IFirst>();
    sole.Reset(sole.Get());
    EXPECT_EQ(Objects.finalReleases, 0) << "the only reference wasn't let go on the way";
    EXPECT_EQ(first.QueryOrThrow<ISecond>()->Second(), 2);
    EXPECT_EQ(CodeThrownBy([&] { return a.QueryOrThrow<ISecond>(); }), E_POINTER);
    EXPECT_EQ(CodeThrownBy([&] { return first.QueryOrThrow<IUnlisted>(); }), E_NOINTERFACE);
}

[[gnu::noipa, gnu::section("tracking_function")]] void TrackHere(const void* object) {
    DbgAliveObjectsTracker::Instance().Track(object, nullptr);
    asm volatile("" ::: "memory");
}

[[gnu::noipa, gnu::section("tracking_caller")]] void CallTrackHere(const void* object) {
    TrackHere(object);
    asm volatile("" ::: "memory");
}

void ListAliveObjects(const char* begin, const char* end) {
    const auto list = [log = std::make_shared<Stage::LogLines>("WARN")] {
        EXPECT_EQ(ComponentsModule::Instance().DumpAliveObjects(), S_OK);
        return log->Take();
    };
    EXPECT_THAT(list(), IsEmpty());
    {
        const auto a = Create<Component, IComponentUnknown>(), b = Create<Component, IComponentUnknown>();
        const auto line = [](const IComponentUnknown* object) {
            return "WARN ObjTag='CComponentObject<class Tests::Component>::CComponentObject' Ptr=" +
                   ToUtf8(FormatWide(u"%p", static_cast<const void*>(object))) +
                   " EIPs=0X\\w{16};0X\\w{16};0X\\w{16};0X\\w{16}";
        };
        const auto [lower, higher] = std::minmax({a.Get(), b.Get()});
        EXPECT_THAT(list(), ElementsAre("WARN Alive component objects: 2", ContainsRegex(line(lower)),
                                        ContainsRegex(line(higher))));
    }
    EXPECT_THAT(list(), IsEmpty());
    CallTrackHere(&Objects);
    const auto lines = list();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[1], testing::StartsWith("WARN ObjTag='(null)' Ptr="));
    const auto frame = std::stoull(lines[1].substr(lines[1].find("EIPs=") + 7), nullptr, 16);
    EXPECT_GT(frame, reinterpret_cast<std::uintptr_t>(begin));
    EXPECT_LE(frame, reinterpret_cast<std::uintptr_t>(end));
    DbgAliveObjectsTracker::Instance().Untrack(&Objects);
}

TEST_F(Components, AreNotListedWhenTrackingIsOff) {
    Stage::LogLines log;
    const auto alive = Create<Component, IFirst>();
    EXPECT_EQ(ComponentsModule::Instance().DumpAliveObjects(), S_OK);
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(Components, AreListedWithThePlaceOfTheirCreationWhenTrackingIsOn) {
    const Stage::Variable on("GS_Debug_EnableAliveObjectsTracking", "1");
    EXPECT_IN_CHILD(ListAliveObjects(trackingStart, trackingStop));
    const Stage::Variable skip("GS_Debug_AliveObjectsTrackingFramesToSkip", "1");
    EXPECT_IN_CHILD(ListAliveObjects(callerStart, callerStop));
}

}  // namespace
}  // namespace Harbor
