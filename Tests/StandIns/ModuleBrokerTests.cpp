#include "ModuleBroker/ModuleBroker.h"

#include <gtest/gtest.h>

using namespace Harbor;

namespace {

constexpr GUID OtherId{1, 2, 3, {4}};

// Counts its references and calls the broker back when it is asked and when it ends.
class Instance : public IComponentUnknown {
public:
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override {
        const std::uint32_t left = --references_;
        if (left == 0) {
            EXPECT_EQ(MBSetNamedInstance(u"Test.Nobody", nullptr), S_OK);
        }
        return left;
    }
    HRESULT QueryInterface(const GUID* iid, void** result) override {
        EXPECT_EQ(MBSetNamedInstance(u"Test.Nobody", nullptr), S_OK);
        if (!(*iid == IComponentUnknown::Id)) return E_NOINTERFACE;
        AddRef();
        *result = this;
        return S_OK;
    }
    std::uint32_t References() const { return references_; }

private:
    std::uint32_t references_ = 0;
};

IComponentUnknown* Get(const WideChar* name) {
    void* result = nullptr;
    return Succeeded(MBGetNamedInstance(name, nullptr, &IComponentUnknown::Id, &result))
               ? static_cast<IComponentUnknown*>(result)
               : nullptr;
}

TEST(ModuleBroker, GivesACountedInterfaceOfTheInstanceOfThatName) {
    Instance first, second;
    EXPECT_EQ(MBSetNamedInstance(u"Test.One", &first), S_OK);
    EXPECT_EQ(MBSetNamedInstance(u"Test.Two", &second), S_OK);
    EXPECT_EQ(first.References(), 1u);
    EXPECT_EQ(Get(u"Test.One"), &first);
    EXPECT_EQ(Get(u"Test.Two"), &second);
    EXPECT_EQ(first.References(), 2u);
    first.Release();

    void* result = &second;
    EXPECT_EQ(MBGetNamedInstance(u"test.one", nullptr, &IComponentUnknown::Id, &result), NOT_FOUND);
    EXPECT_EQ(MBGetNamedInstance(u"Test.One", nullptr, &OtherId, &result), E_NOINTERFACE);
    EXPECT_EQ(MBGetNamedInstance(nullptr, nullptr, &OtherId, &result), E_POINTER);
    EXPECT_EQ(result, &second);

    EXPECT_EQ(MBSetNamedInstance(u"Test.One", &second), S_OK);
    EXPECT_EQ(first.References(), 0u);
    EXPECT_EQ(MBSetNamedInstance(u"Test.One", nullptr), S_OK);
    EXPECT_EQ(MBSetNamedInstance(u"Test.Two", nullptr), S_OK);
    EXPECT_EQ(Get(u"Test.Two"), nullptr);
    EXPECT_EQ(second.References(), 1u);
}

}  // namespace
