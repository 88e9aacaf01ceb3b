#include <algorithm>
#include <vector>

#include "Common/Nodes/CNodeSerializer.h"
#include "Support/JoiningThread.h"
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

// On both sides of the counts at which the index appears and grows, for the node and for a clone that continues by
// itself.
TEST_F(NodeFabric, KeepsManyAttributesInTheOrderOfTheirFirstSetting) {
    const NodePtr node = NewNode(u"Node");
    std::vector<std::pair<std::u16string, std::u16string>> expected;
    const auto check = [&](const NodePtr& checked) {
        std::u16string names;
        for (const auto& [name, value] : expected) {
            EXPECT_EQ(ACNode::Borrow(checked.get()).GetText(name.c_str()), value);
            names.append(name).push_back(u'\0');
        }
        auto size = static_cast<std::uint32_t>(names.size() + 1);
        std::u16string read(size, u'?');
        EXPECT_EQ(AcnGetAttributeNames(checked.get(), read.data(), &size), S_OK);
        EXPECT_EQ(read, names + u'\0');
        EXPECT_EQ(AcnGetAttribute(checked.get(), u"Nobody", nullptr, nullptr, nullptr, nullptr), NOT_FOUND);
    };
    for (std::size_t number = 0; number < 300; ++number) {
        const std::string digits = std::to_string(number * 7919 % 1000);
        expected.emplace_back(std::u16string(digits.begin(), digits.end()) + u"-name", u"first");
        EXPECT_EQ(SetText(node, expected.back().first.c_str(), u"first"), S_OK);
        auto& [name, value] = expected[number / 2];
        value += u"+";
        EXPECT_EQ(SetText(node, name.c_str(), value), S_OK);
        if (number < 20 || number % 64 == 0) check(node);
    }
    check(node);
    const NodePtr clone = Open(AcnCloneNode, node.get(), 0u, 0u);
    check(clone);
    EXPECT_EQ(SetText(node, u"Nobody", u""), S_OK);
    check(clone);
    expected.emplace_back(u"CloneOnly", u"x");
    EXPECT_EQ(SetText(clone, u"CloneOnly", u"x"), S_OK);
    check(clone);
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
        const JoiningThread threads[] = {JoiningThread(readAndWrite), JoiningThread(readAndWrite),
                                         JoiningThread(removeAndAppend), JoiningThread(removeAndAppend)};
    }
    for (const char16_t* name : Names) EXPECT_TRUE(Open(AcnGetChildByName, root.get(), name));
}

}  // namespace
