#include <algorithm>
#include <limits>
#include <vector>

#include "StoreFixture.h"

using namespace Harbor;

namespace {

class NodeFabric : public StoreTest {};

TEST_F(NodeFabric, GivesOneHandleValueForOneNodeAndKeepsTheTreeWhileAnyIsOpen) {
    NodePtr root = NewNode(u"Root"), branch = AddChild(root, u"Branch"), leaf = AddChild(branch, u"Leaf");
    const std::uint64_t before = OpenHandles();
    {
        const NodePtr handles[] = {Open(AcnGetChildByIndex, root.get(), 0u), Open(AcnGetParent, leaf.get()),
                                   Open(AcnGetChildByName, root.get(), u"Branch"),
                                   Open(AcnDuplicateNodeHandle, branch.get())};
        for (const NodePtr& handle : handles) EXPECT_EQ(handle.get(), branch.get());
        EXPECT_EQ(OpenHandles(), before + 4);
    }
    AddChild(root, u"Uncle");
    root.reset();
    branch.reset();
    branch = Open(AcnGetParent, leaf.get());
    root = Open(AcnGetParent, branch.get());
    EXPECT_EQ(FullPath(Open(AcnGetChildByName, root.get(), u"Uncle")), u"\\Root\\Uncle");

    const NodePtr other = NewNode(u"Other");
    EXPECT_EQ(AcnAppendChild(other.get(), branch.get()), E_INVALIDARG);
    EXPECT_EQ(AcnAppendChild(leaf.get(), root.get()), E_INVALIDARG);
    EXPECT_EQ(AcnRemoveChild(root.get(), leaf.get()), NOT_FOUND);
    EXPECT_EQ(AcnRemoveChild(root.get(), branch.get()), S_OK);
    root.reset();
    branch.reset();
    EXPECT_EQ(FullPath(leaf), u"\\Branch\\Leaf");
    EXPECT_EQ(AcnAppendChild(other.get(), Open(AcnGetParent, leaf.get()).get()), S_OK);
    EXPECT_EQ(FullPath(leaf), u"\\Other\\Branch\\Leaf");
}

// On both sides of the count from which names are indexed, while siblings come and go.
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
        EXPECT_FALSE(Open(AcnGetChildByName, root.get(), u"Nobody"));
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

TEST_F(NodeFabric, ClonesToADepthAndKeepsTheOriginalsPaths) {
    const NodePtr root = NewNode(u"Root"), branch = AddChild(root, u"Branch"), leaf = AddChild(branch, u"Leaf");
    EXPECT_EQ(SetText(leaf, u"Old", u""), S_OK);
    const NodePtr alone = Open(AcnCloneNode, branch.get(), 0u, 0u);
    EXPECT_FALSE(Open(AcnGetChildByIndex, alone.get(), 0u));
    EXPECT_FALSE(Open(AcnGetParent, alone.get()));
    EXPECT_EQ(FullPath(alone), u"\\Root\\Branch");

    const NodePtr oneLevel = Open(AcnCloneNode, root.get(), 1u, 0u);
    EXPECT_FALSE(Open(AcnGetChildByIndex, Open(AcnGetChildByIndex, oneLevel.get(), 0u).get(), 0u));
    const NodePtr whole = Open(AcnCloneNode, branch.get(), AcnWholeTree, 0u);
    const NodePtr copy = Open(AcnGetChildByName, whole.get(), u"Leaf");
    EXPECT_EQ(SetText(leaf, u"New", u""), S_OK);
    EXPECT_EQ(ReadText([&](auto... room) { return AcnGetAttributeNames(copy.get(), room...); }),
              std::u16string(u"Old\0", 4));
    EXPECT_EQ(FullPath(Open(AcnCloneNode, copy.get(), 0u, 0u)), u"\\Root\\Branch\\Leaf");
    EXPECT_EQ(AcnAppendChild(alone.get(), whole.get()), S_OK);
    EXPECT_EQ(FullPath(copy), u"\\Root\\Branch\\Branch\\Leaf");
}

TEST_F(NodeFabric, ReportsSizesAndKeepsToTheRoomItIsGiven) {
    const NodePtr node = NewNode(u"Name", u"Type!");
    for (const char16_t* name : {u"B", u"A", u"B"}) EXPECT_EQ(SetText(node, name, u"ab"), S_OK);
    const auto names = [&](auto... room) { return AcnGetAttributeNames(node.get(), room...); };
    EXPECT_EQ(ReadText(names), std::u16string(u"B\0A\0", 4));
    EXPECT_EQ(ReadText([&](auto... room) { return AcnGetNodeType(node.get(), room...); }), u"Type!");

    char16_t room[] = u"???????";
    std::uint32_t size = 4;
    EXPECT_EQ(AcnGetNodeName(node.get(), 0, room, &size), BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(AcnGetAttribute(node.get(), u"A", nullptr, room, &size, nullptr), BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(std::u16string(room), u"???????");
    std::uint16_t type = 0;
    EXPECT_EQ(AcnGetAttribute(node.get(), u"A", nullptr, room, &size, &type), S_OK);
    EXPECT_EQ(std::u16string(room), u"ab");
    EXPECT_EQ(type, AcnTypeWideText);
    EXPECT_EQ(AcnGetAttribute(node.get(), u"A", &AcnTypeInt32, room, &size, nullptr), DATATYPE_MISMATCH);
}

// A number of one type read as another: the value, or nothing where it doesn't fit.
TEST_F(NodeFabric, ConvertsNumbersWhereTheValueFits) {
    constexpr std::int64_t Least32 = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t Greatest32 = std::numeric_limits<std::uint32_t>::max();
    struct Row {
        std::uint16_t stored;
        std::int64_t value;
        std::vector<std::uint16_t> readableAs;
    };
    const Row rows[] = {
        {AcnTypeInt32, -1, {3, 6}},       {AcnTypeInt32, 1, {3, 4, 6, 7}},     {AcnTypeInt32, Least32, {3, 6}},
        {AcnTypeUInt32, 2, {3, 4, 6}},    {AcnTypeUInt32, Greatest32, {4, 6}}, {AcnTypeInt64, Greatest32 + 1, {6}},
        {AcnTypeInt64, Least32 - 1, {6}}, {AcnTypeInt64, 0, {3, 4, 6, 7}},     {AcnTypeBool, 1, {3, 4, 6, 7}},
    };
    const auto sizeOf = [](std::uint16_t type) { return type == AcnTypeInt64 ? 8u : type == AcnTypeBool ? 1u : 4u; };
    const NodePtr node = NewNode(u"Node");
    for (const Row& row : rows) {
        ASSERT_EQ(AcnSetAttribute(node.get(), u"A", row.stored, &row.value, sizeOf(row.stored)), S_OK);
        for (std::uint16_t type = 0; type < 10; ++type) {
            SCOPED_TRACE(testing::Message() << row.stored << " holds " << row.value << ", read as " << type);
            const bool fits = std::ranges::count(row.readableAs, type) != 0;
            std::int64_t read = 0;
            std::uint32_t size = sizeof(read);
            const HRESULT code = AcnGetAttribute(node.get(), u"A", &type, &read, &size, nullptr);
            EXPECT_EQ(code, fits ? S_OK : DATATYPE_MISMATCH);
            if (!fits) continue;
            EXPECT_EQ(type == AcnTypeInt32 ? static_cast<std::int32_t>(read) : read, row.value);
            EXPECT_EQ(size, sizeOf(type));
        }
    }
}

TEST_F(NodeFabric, HoldsAndDumpsAChainThatIsDeeperThanTheCallStack) {
    constexpr std::size_t Depth = 300'000;
    NodePtr root = NewNode(u"x"), end = Open(AcnDuplicateNodeHandle, root.get());
    for (std::size_t level = 1; level < Depth; ++level) end = AddChild(end, u"x");
    NodePtr clone = Open(AcnCloneNode, root.get(), AcnWholeTree, 0u);
    root.reset();
    EXPECT_EQ(FullPath(end).size(), 2 * Depth);
    end.reset();  // the count goes up the whole chain, then the tree goes
    std::size_t dumped = 0;
    EXPECT_EQ(DumpTo([&](auto block) { return dumped += block.size(), S_OK; }, clone.get()), S_OK);
    EXPECT_LT(dumped, Depth * 200);
    while (NodePtr next = Open(AcnGetChildByIndex, clone.get(), 0u)) clone = std::move(next);
    EXPECT_EQ(FullPath(clone).size(), 2 * Depth);
}

}  // namespace
