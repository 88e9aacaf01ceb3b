#include "Platform/ErrorObjects.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using namespace Platform;

constexpr HRESULT Ok = 0, Empty = 1;
constexpr GUID SomeGuid{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};

// A partner from elsewhere: an object whose references can be read.
class ForeignErrorInfo final : public IErrorInfo {
public:
    HRESULT QueryInterface(const GUID*, void**) override { return -1; }
    std::uint32_t AddRef() override { return ++References; }
    std::uint32_t Release() override { return --References; }
    HRESULT GetGUID(GUID*) override { return -1; }
    HRESULT GetSource(BSTR*) override { return -1; }
    HRESULT GetDescription(BSTR*) override { return -1; }
    HRESULT GetHelpFile(BSTR*) override { return -1; }
    HRESULT GetHelpContext(DWORD*) override { return -1; }

    std::atomic<std::uint32_t> References{1};
};

TEST(ErrorObjects, AreOneObjectBehindTheirInterfaces) {
    ICreateErrorInfo* writer = nullptr;
    ASSERT_EQ(CreateErrorInfo(&writer), Ok);
    void *unknown = nullptr, *reader = nullptr, *again = nullptr, *other = writer;
    EXPECT_EQ(writer->QueryInterface(&IUnknown::Id, &unknown), Ok);
    EXPECT_EQ(writer->QueryInterface(&IErrorInfo::Id, &reader), Ok);
    EXPECT_EQ(static_cast<IErrorInfo*>(reader)->QueryInterface(&ICreateErrorInfo::Id, &again), Ok);
    EXPECT_EQ(again, writer);
    EXPECT_EQ(unknown, reader);
    EXPECT_EQ(writer->QueryInterface(&SomeGuid, &other), static_cast<HRESULT>(0x80004002));
    EXPECT_EQ(other, nullptr);
    for (std::uint32_t left = 4; left-- > 0;) EXPECT_EQ(writer->Release(), left);
}

TEST(ErrorSlot, GivesAnObjectOnceAndReleasesWhatIsReplacedOrCleared) {
    ForeignErrorInfo first, second;
    SetErrorInfo(0, &first);
    SetErrorInfo(0, &second);
    EXPECT_EQ(first.References, 1u);
    SetErrorInfo(0, &second);
    EXPECT_EQ(second.References, 2u);
    IErrorInfo* taken = nullptr;
    EXPECT_EQ(GetErrorInfo(0, &taken), Ok);
    EXPECT_EQ(taken, &second);
    EXPECT_EQ(GetErrorInfo(0, &taken), Empty);
    EXPECT_EQ(second.References, 2u);
    SetErrorInfo(0, &first);
    second.Release();
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(first.References, 1u);
    EXPECT_EQ(second.References, 1u);
    EXPECT_LT(SetErrorInfo(1, &first), 0);
    EXPECT_EQ(first.References, 1u);
}

TEST(ErrorSlot, BelongsToOneThreadAndEndsWithIt) {
    ForeignErrorInfo object;
    std::thread([&object] {
        SetErrorInfo(0, &object);
        EXPECT_EQ(object.References, 2u);
        IErrorInfo* elsewhere = nullptr;
        std::thread([&elsewhere] { EXPECT_EQ(GetErrorInfo(0, &elsewhere), Empty); }).join();
    }).join();
    EXPECT_EQ(object.References, 1u);
}

}  // namespace
