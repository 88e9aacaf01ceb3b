#include "ModuleBroker/ModuleBroker.h"

#include <gtest/gtest.h>

using namespace Harbor;

namespace {

constexpr GUID OtherId{1, 2, 3, {4}};

// Calls the broker back when it is asked and when it is released.
class Instance : public IComponentUnknown {
public:
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override {
        --references;
        EXPECT_EQ(MBSetNamedInstance(u"Test.Nobody", nullptr), S_OK);
        return references;
    }
    HRESULT QueryInterface(const GUID* iid, void** result) override {
        EXPECT_EQ(MBSetNamedInstance(u"Test.Nobody", nullptr), S_OK);
        if (!(*iid == IComponentUnknown::Id)) return E_NOINTERFACE;
        AddRef();
        *result = this;
        return S_OK;
    }

    std::uint32_t references = 0;
};

TEST(ModuleBroker, GivesACountedInterfaceOfTheInstanceOfThatName) {
    Instance first, second;
    EXPECT_EQ(MBSetNamedInstance(u"Test.One", &first), S_OK);
    EXPECT_EQ(MBSetNamedInstance(u"Test.Two", &second), S_OK);
    void* result = nullptr;
    EXPECT_EQ(MBGetNamedInstance(u"test.one", nullptr, &IComponentUnknown::Id, &result), NOT_FOUND);
    EXPECT_EQ(MBGetNamedInstance(u"Test.One", nullptr, &OtherId, &result), E_NOINTERFACE);
    EXPECT_EQ(MBGetNamedInstance(u"Test.One", nullptr, &IComponentUnknown::Id, &result), S_OK);
    EXPECT_EQ(result, &first);
    EXPECT_EQ(first.references, 2u);
    first.Release();
    EXPECT_EQ(MBSetNamedInstance(u"Test.One", &second), S_OK);
    EXPECT_EQ(first.references, 0u);
    for (const WideChar* name : {u"Test.One", u"Test.Two"}) EXPECT_EQ(MBSetNamedInstance(name, nullptr), S_OK);
    EXPECT_EQ(second.references, 0u);
}

}  // namespace
