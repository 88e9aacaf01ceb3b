#include <atomic>
#include <thread>
#include <vector>

#include "StoreFixture.h"

using namespace Harbor;

namespace {

class NodeFabricThreads : public StoreTest {};

constexpr int Rounds = 2000;
constexpr const char16_t* Names[] = {u"A", u"B", u"C", u"D", u"E", u"F", u"G", u"H", u"I", u"J", u"K", u"L"};

void RunTogether(const std::vector<std::function<void()>>& jobs) {
    std::vector<std::jthread> threads;
    for (const auto& job : jobs) threads.emplace_back(job);
}

TEST_F(NodeFabricThreads, ReadersAndWritersOfOneTreeLeaveItWhole) {
    const NodePtr root = NewNode(u"Root");
    for (const char16_t* name : Names) AddChild(AddChild(root, name), u"Leaf");
    const auto readAndWrite = [&] {
        for (std::size_t round = 0; round < Rounds; ++round) {
            const NodePtr child = Open(AcnGetChildByName, root.get(), Names[round % std::size(Names)]);
            if (!child) continue;
            const NodePtr leaf = Open(AcnGetChildByIndex, child.get(), 0u);
            EXPECT_EQ(SetText(leaf, u"Text", std::u16string(round % 50, u'x')), S_OK);
            EXPECT_EQ(Open(AcnGetParent, leaf.get()).get(), child.get());
            EXPECT_TRUE(FullPath(leaf).ends_with(u"\\Leaf"));
        }
    };
    const auto removeAndAppend = [&] {
        for (std::size_t round = 0; round < Rounds; ++round) {
            const NodePtr child = Open(AcnGetChildByName, root.get(), Names[round * 5 % std::size(Names)]);
            if (!child || AcnRemoveChild(root.get(), child.get()) != S_OK) continue;
            EXPECT_EQ(AcnAppendChild(root.get(), child.get()), S_OK);
        }
    };
    const auto cloneAndDump = [&] {
        for (int round = 0; round < Rounds / 10; ++round) {
            const NodePtr clone = Open(AcnCloneNode, root.get(), AcnWholeTree, 0u);
            for (const NodePtr* node : {&clone, &root}) EXPECT_EQ(DumpTo([](auto) { return S_OK; }, node->get()), S_OK);
        }
    };
    RunTogether({readAndWrite, readAndWrite, removeAndAppend, removeAndAppend, cloneAndDump});
    for (const char16_t* name : Names) EXPECT_TRUE(Open(AcnGetChildByName, root.get(), name));
}

// Threads close the handles of one tree in every order; whichever comes last takes the tree along.
TEST_F(NodeFabricThreads, TheLastHandleOfAnyThreadTakesTheTreeAlong) {
    for (int round = 0; round < Rounds / 4; ++round) {
        NodePtr root = NewNode(u"Root"), left = AddChild(root, u"Left"), right = AddChild(root, u"Right");
        std::atomic<int> ready{0};
        const auto close = [&ready](NodePtr& node) {
            ++ready;
            while (ready < 3) std::this_thread::yield();
            const NodePtr parent = Open(AcnGetParent, node.get());
            node.reset();
        };
        RunTogether({[&] { close(root); }, [&] { close(left); }, [&] { close(right); }});
    }
}

}  // namespace
