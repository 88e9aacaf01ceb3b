#include <algorithm>
#include <thread>
#include <vector>

#include "Common/Nodes/CNodeSerializer.h"
#include "Support/StoreFixture.h"

using namespace Harbor;

namespace {

class NodeFabric : public StoreTest {};

WideString FullPath(const NodePtr& node) {
    return ACNode::Borrow(node.get()).GetFullPath();
}
std::string Dump(AcnHandle node) {
    return NodesToText(&node, 1, 257, AcnWholeTree);
}

constexpr const char16_t* Names[] = {u"A", u"B", u"C", u"D", u"E", u"F", u"G", u"H", u"I", u"J", u"K", u"L"};

// With fewer and with more children than the limit from which names are indexed, while children are added and removed.
TEST_F(NodeFabric, FindsTheFirstOfSiblingsThatShareAName) {
    const NodePtr root = NewNode(u"Root");
    std::vector<std::pair<std::u16string, NodePtr>> children;
    const auto check = [&] {
        for (std::size_t index = 0; index < children.size(); ++index) {
            const auto& [name, child] = children[index];
            const auto first = std::ranges::find(children, name, [](const auto& entry) { return entry.first; });
            ASSERT_EQ(Open(AcnGetChildByIndex, root.get(), index).get(), child.get());
            ASSERT_EQ(Open(AcnGetChildByName, root.get(), name.c_str()).get(), first->second.get());
        }
        EXPECT_FALSE(Open(AcnGetChildByIndex, root.get(), children.size()));
        EXPECT_FALSE(Open(AcnGetChildByName, root.get(), u"Missing"));
    };
    for (char16_t number = 0; number < 40; ++number) {
        const std::u16string name(1, static_cast<char16_t>(u'a' + number % 13));
        children.emplace_back(name, AddChild(root, name.c_str()));
        check();
    }
    while (!children.empty()) {
        const auto leaving = children.begin() + static_cast<std::ptrdiff_t>(children.size() / 3);
        EXPECT_EQ(AcnRemoveChild(root.get(), leaving->second.get()), S_OK);
        children.erase(leaving);
        check();
    }
}

TEST_F(NodeFabric, HoldsAndDumpsAChainThatIsDeeperThanTheCallStack) {
    constexpr std::size_t Depth = 300'000;
    NodePtr root = NewNode(u"x"), end = Open(AcnDuplicateNodeHandle, root.get());
    for (std::size_t level = 1; level < Depth; ++level) end = AddChild(end, u"x");
    NodePtr clone = Open(AcnCloneNode, root.get(), AcnWholeTree, 0u);
    root.reset();
    EXPECT_EQ(FullPath(end).size(), 2 * Depth);
    end.reset();  // releases the whole chain, then the tree
    EXPECT_LT(Dump(clone.get()).size(), Depth * 200);
    while (NodePtr next = Open(AcnGetChildByIndex, clone.get(), 0u)) clone = std::move(next);
    EXPECT_EQ(FullPath(clone).size(), 2 * Depth);
}

TEST_F(NodeFabric, StaysConsistentUnderConcurrentReadersAndWriters) {
    const NodePtr root = NewNode(u"Root");
    for (const char16_t* name : Names) AddChild(AddChild(root, name), u"Leaf");
    constexpr std::size_t Rounds = 2000;
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
    {
        const std::jthread threads[] = {std::jthread(readAndWrite), std::jthread(readAndWrite),
                                        std::jthread(removeAndAppend), std::jthread(removeAndAppend)};
    }
    for (const char16_t* name : Names) EXPECT_TRUE(Open(AcnGetChildByName, root.get(), name));
}

}  // namespace
