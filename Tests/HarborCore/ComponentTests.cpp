#include "Common/Base/Format.h"
#include "Common/Components/CComponentObject.h"
#include "Platform/Process.h"
#include "Stage.h"

using namespace testing;
using Stage::CodeThrownBy;

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
struct IUnlisted : IComponentUnknown {
    static constexpr GUID Id{1, 2, 3, {6}};
};

// The state of all objects of the test's class, and what the next creation does.
struct {
    int alive, finalReleases;
    HRESULT finalConstruct;
    bool constructorThrows;
} Objects{};

std::uint32_t References(IComponentUnknown* object) {
    object->AddRef();
    return object->Release();
}

class Component : public ComponentRoot, public IFirst, public ISecond {
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
        References(static_cast<IFirst*>(this));  // as a partner may do that is called during the end
        EXPECT_EQ(First() + Second(), 3) << "the object must still be intact";
    }
    int First() override { return 1; }
    int Second() override { return 2; }
};
using Object = CComponentObject<Component>;

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

TEST_F(Components, AreCreatedWithOneReferenceOrNotAtAll) {
    void* const before = &Objects;
    // The requested id, the results of FinalConstruct and of the creation, and the number of final releases.
    const std::tuple<const GUID*, HRESULT, HRESULT, int> rows[] = {{&IFirst::Id, S_OK, S_OK, 1},
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

TEST_F(Components, AreKeptAliveByTheirPointers) {
    using Pointer = ComponentPtr<IFirst>;
    Pointer sole = Create<Component, IFirst>();
    IFirst* const object = sole.Get();
    const std::function<void()> steps[] = {[&] { sole = *&sole; }, [&] { sole.Reset(object); },
                                           [&] { sole.Assign(std::move(*&sole)); },
                                           [&] { sole = Pointer::Attach(sole.Detach()); }};
    for (const auto& step : steps) {
        step();
        EXPECT_EQ(sole.Get(), object);
        EXPECT_EQ(References(object), 1u);
        EXPECT_EQ(Objects.finalReleases, 0) << "the only reference must not be released in between";
    }
    Pointer other;
    EXPECT_EQ(sole.QueryTo(other), S_OK);
    EXPECT_EQ(sole.QueryTo(other, IUnlisted::Id), E_NOINTERFACE);
    EXPECT_EQ(other.Get(), object) << "a failed query must not change the pointer";
    EXPECT_EQ(*other.Address(), nullptr);
    EXPECT_EQ(References(object), 1u);
    EXPECT_EQ(QueryOrThrow<ISecond>(sole)->Second(), 2);
    EXPECT_EQ(CodeThrownBy([&] { return QueryOrThrow<ISecond>(other); }), E_POINTER);
    EXPECT_EQ(CodeThrownBy([&] { return QueryOrThrow<IUnlisted>(sole); }), E_NOINTERFACE);
}

void ListAliveObjects(std::size_t framesToSkip) {
    Stage::LogLines log("WARN");
    const auto list = [&] {
        EXPECT_EQ(ComponentsModule::Instance().DumpAliveObjects(), S_OK);
        return log.Take();
    };
    EXPECT_THAT(list(), IsEmpty());
    {
        const auto alive = Create<Component, IComponentUnknown>();
        void* frames[5];  // all but the first, which is in this function, are also recorded by Track below
        ASSERT_EQ(Platform::RtlCaptureStackBackTrace(0, 5, frames, nullptr), 5);
        DbgAliveObjectsTracker::Track(&Objects, nullptr);
        std::string end = framesToSkip == 0 ? "" : " EIPs=" + ToUtf8(FormatWide(u"%#p", frames[1]));
        for (std::size_t i = 1 + framesToSkip; i < 4 + framesToSkip; ++i)
            end += ";" + ToUtf8(FormatWide(u"%#p", frames[i]));
        const std::string head = "WARN ObjTag='CComponentObject<class Tests::Component>::CComponentObject' Ptr=" +
                                 ToUtf8(FormatWide(u"%p", static_cast<const void*>(alive.Get())));
        EXPECT_THAT(list(), UnorderedElementsAre("WARN Alive component objects: 2",
                                                 MatchesRegex(head + " EIPs=0X\\w{16};0X\\w{16};0X\\w{16};0X\\w{16}"),
                                                 AllOf(StartsWith("WARN ObjTag='(null)' Ptr="), EndsWith(end))));
        DbgAliveObjectsTracker::Untrack(&Objects);
    }
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(Components, AreListedWithTheirCreationPlaceOnlyWhenTrackingIsOn) {
    {
        const ScopedVariable on("GS_Debug_EnableAliveObjectsTracking", "1");
        EXPECT_IN_CHILD(ListAliveObjects(0));
        const ScopedVariable skip("GS_Debug_AliveObjectsTrackingFramesToSkip", "1");
        EXPECT_IN_CHILD(ListAliveObjects(1));
    }
    Stage::LogLines log;
    const auto alive = Create<Component, IFirst>();
    EXPECT_EQ(ComponentsModule::Instance().DumpAliveObjects(), S_OK);
    EXPECT_THAT(log.Take(), IsEmpty());
}

}  // namespace
}  // namespace Harbor
