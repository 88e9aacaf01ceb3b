#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "StoreFixture.h"

using namespace Harbor;

namespace {

class NodeFabricThreads : public StoreTest {
protected:
    static void RunTogether(const std::vector<std::function<void()>>& jobs) {
        std::vector<std::jthread> threads;
        for (const auto& job : jobs) threads.emplace_back(job);
    }
};

constexpr int Rounds = 2000;
constexpr int Children = 12;

std::u16string ChildName(int number) {
    return {u'C', static_cast<char16_t>(u'a' + number)};
}

HRESULT Discard(const void*, std::uint32_t, void*) {
    return S_OK;
}

void LookUp(const NodePtr& root) {
    for (int round = 0; round < Rounds; ++round) {
        const NodePtr child = Open(AcnGetChildByName, root.get(), ChildName(round % Children).c_str());
        if (!child) continue;
        const NodePtr leaf = Open(AcnGetChildByIndex, child.get(), 0u);
        ASSERT_TRUE(leaf);
        EXPECT_EQ(Open(AcnGetParent, leaf.get()).get(), child.get());
        EXPECT_TRUE(FullPath(leaf).ends_with(u"\\Leaf"));
        std::int64_t number = -1;
        std::uint32_t size = sizeof(number);
        EXPECT_EQ(AcnGetAttribute(leaf.get(), u"Number", &AcnTypeInt64, &number, &size, nullptr), S_OK);
        EXPECT_GE(number, 0);
    }
}

void RemoveAndAppend(const NodePtr& root) {
    for (int round = 0; round < Rounds; ++round) {
        const NodePtr child = Open(AcnGetChildByName, root.get(), ChildName(round * 5 % Children).c_str());
        if (!child || AcnRemoveChild(root.get(), child.get()) != S_OK) continue;
        EXPECT_EQ(AcnAppendChild(root.get(), child.get()), S_OK);
    }
}

void Write(const NodePtr& root) {
    for (std::int64_t round = 0; round < Rounds; ++round) {
        const NodePtr child = Open(AcnGetChildByIndex, root.get(), static_cast<std::uint64_t>(round % Children));
        const NodePtr leaf = child ? Open(AcnGetChildByIndex, child.get(), 0u) : nullptr;
        if (!leaf) continue;
        EXPECT_EQ(AcnSetAttribute(leaf.get(), u"Number", AcnTypeInt64, &round, sizeof(round)), S_OK);
    }
}

void CloneAndDump(const NodePtr& root) {
    for (int round = 0; round < Rounds / 10; ++round) {
        const NodePtr clone = Open(AcnCloneNode, root.get(), AcnWholeTree, 0u);
        const AcnHandle nodes[] = {clone.get(), root.get()};
        AcnContext context = nullptr;
        EXPECT_EQ(AcnStartSerialization(1, 257, Discard, nullptr, &context), S_OK);
        EXPECT_EQ(AcnSerializeNodes(context, nodes, 2, AcnWholeTree), S_OK);
        EXPECT_EQ(AcnFinalizeSerialization(context), S_OK);
        EXPECT_EQ(AcnCloseSerializationContext(context), S_OK);
    }
}

TEST_F(NodeFabricThreads, ReadersAndWritersOfOneTreeLeaveItWhole) {
    const NodePtr root = NewNode(u"Root");
    const std::int64_t zero = 0;
    for (int number = 0; number < Children; ++number) {
        const NodePtr child = AddChild(root, ChildName(number).c_str());
        const NodePtr leaf = AddChild(child, u"Leaf");
        EXPECT_EQ(AcnSetAttribute(leaf.get(), u"Number", AcnTypeInt64, &zero, sizeof(zero)), S_OK);
    }
    RunTogether({[&] { LookUp(root); }, [&] { LookUp(root); }, [&] { RemoveAndAppend(root); },
                 [&] { RemoveAndAppend(root); }, [&] { Write(root); }, [&] { CloneAndDump(root); }});
    for (int number = 0; number < Children; ++number) {
        EXPECT_TRUE(Open(AcnGetChildByName, root.get(), ChildName(number).c_str())) << number;
    }
}

// Threads close the handles of one tree in every order; whichever comes last takes the tree along.
TEST_F(NodeFabricThreads, TheLastHandleOfAnyThreadTakesTheTreeAlong) {
    for (int round = 0; round < Rounds / 4; ++round) {
        NodePtr root = NewNode(u"Root");
        NodePtr left = AddChild(root, u"Left");
        NodePtr right = AddChild(root, u"Right");
        std::atomic<int> ready{0};
        const auto closeTogether = [&ready](NodePtr& node) {
            ++ready;
            while (ready < 3) std::this_thread::yield();
            const NodePtr parent = Open(AcnGetParent, node.get());
            node.reset();
        };
        RunTogether({[&] { closeTogether(root); }, [&] { closeTogether(left); }, [&] { closeTogether(right); }});
    }
}

}  // namespace
