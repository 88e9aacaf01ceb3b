#include <algorithm>
#include <limits>
#include <vector>

#include "StoreFixture.h"

using namespace Harbor;

namespace {

class NodeFabric : public StoreTest {};

TEST_F(NodeFabric, GivesOneHandleValueForOneNodeAndCountsEachLookUp) {
    const NodePtr root = NewNode(u"Root", u"RootType");
    const NodePtr child = AddChild(root, u"Child");
    const std::uint64_t before = OpenHandles();
    const NodePtr byIndex = Open(AcnGetChildByIndex, root.get(), 0u);
    const NodePtr byName = Open(AcnGetChildByName, root.get(), u"Child");
    const NodePtr duplicate = Open(AcnDuplicateNodeHandle, child.get());
    const NodePtr parent = Open(AcnGetParent, child.get());
    EXPECT_EQ(byIndex.get(), child.get());
    EXPECT_EQ(byName.get(), child.get());
    EXPECT_EQ(duplicate.get(), child.get());
    EXPECT_EQ(parent.get(), root.get());
    EXPECT_EQ(OpenHandles(), before + 4);
}

TEST_F(NodeFabric, KeepsTheWholeTreeWhileALeafIsOpen) {
    NodePtr leaf;
    {
        const NodePtr root = NewNode(u"Root");
        const NodePtr middle = AddChild(root, u"Middle");
        AddChild(root, u"Uncle");
        leaf = AddChild(middle, u"Leaf");
    }
    EXPECT_EQ(FullPath(leaf), u"\\Root\\Middle\\Leaf");
    const NodePtr middle = Open(AcnGetParent, leaf.get());
    leaf.reset();
    const NodePtr root = Open(AcnGetParent, middle.get());
    EXPECT_EQ(Name(Open(AcnGetChildByName, root.get(), u"Uncle")), u"Uncle");
    EXPECT_FALSE(Open(AcnGetParent, root.get()));
}

TEST_F(NodeFabric, SplitsARemovedSubtreeOffAndKeepsItWhileItIsHeld) {
    NodePtr root = NewNode(u"Root");
    NodePtr branch = AddChild(root, u"Branch");
    NodePtr leaf = AddChild(branch, u"Leaf");
    EXPECT_EQ(AcnRemoveChild(root.get(), branch.get()), S_OK);
    EXPECT_EQ(AcnRemoveChild(root.get(), branch.get()), NOT_FOUND);
    EXPECT_FALSE(Open(AcnGetChildByName, root.get(), u"Branch"));
    root.reset();
    branch.reset();
    EXPECT_EQ(FullPath(leaf), u"\\Branch\\Leaf");

    const NodePtr other = NewNode(u"Other");
    branch = Open(AcnGetParent, leaf.get());
    EXPECT_EQ(AcnAppendChild(other.get(), branch.get()), S_OK);
    EXPECT_EQ(FullPath(leaf), u"\\Other\\Branch\\Leaf");
}

TEST_F(NodeFabric, RefusesASecondParentAndACircle) {
    const NodePtr root = NewNode(u"Root");
    const NodePtr child = AddChild(root, u"Child");
    const NodePtr grandchild = AddChild(child, u"Grandchild");
    const NodePtr other = NewNode(u"Other");
    EXPECT_EQ(AcnAppendChild(other.get(), child.get()), E_INVALIDARG);
    EXPECT_EQ(AcnAppendChild(grandchild.get(), root.get()), E_INVALIDARG);
    EXPECT_EQ(AcnAppendChild(other.get(), other.get()), E_INVALIDARG);
    EXPECT_EQ(AcnRemoveChild(root.get(), grandchild.get()), NOT_FOUND);
    EXPECT_EQ(FullPath(grandchild), u"\\Root\\Child\\Grandchild");
}

// On both sides of the count from which names are indexed, while siblings come and go.
TEST_F(NodeFabric, FindsTheFirstOfSiblingsThatShareAName) {
    for (const std::size_t count : {3u, 40u}) {
        const NodePtr root = NewNode(u"Root");
        std::vector<NodePtr> children;
        const auto check = [&] {
            for (std::size_t index = 0; index < children.size(); ++index) {
                ASSERT_EQ(Open(AcnGetChildByIndex, root.get(), index).get(), children[index].get());
                const std::u16string name = Name(children[index]);
                std::size_t first = 0;
                while (Name(children[first]) != name) ++first;
                ASSERT_EQ(Open(AcnGetChildByName, root.get(), name.c_str()).get(), children[first].get());
            }
            std::uint64_t size = 0;
            EXPECT_EQ(AcnGetChildCount(root.get(), &size), S_OK);
            EXPECT_EQ(size, children.size());
            EXPECT_FALSE(Open(AcnGetChildByIndex, root.get(), children.size()));
            EXPECT_FALSE(Open(AcnGetChildByName, root.get(), u"Nobody"));
        };
        const auto add = [&](std::size_t number) {
            const std::u16string name{u'N', static_cast<char16_t>(u'a' + number % 13)};
            children.push_back(AddChild(root, name.c_str()));
        };
        for (std::size_t number = 0; number < count; ++number) add(number);
        check();
        while (children.size() > 2) {
            const auto leaving = children.begin() + static_cast<std::ptrdiff_t>(children.size() % 3);
            EXPECT_EQ(AcnRemoveChild(root.get(), leaving->get()), S_OK);
            children.erase(leaving);
            check();
        }
        for (std::size_t number = 0; number < 3; ++number) add(number);
        check();
    }
}

TEST_F(NodeFabric, ClonesToADepthAndKeepsTheOriginalsPaths) {
    const NodePtr root = NewNode(u"Root");
    const NodePtr branch = AddChild(root, u"Branch", u"BranchType");
    const NodePtr leaf = AddChild(branch, u"Leaf");
    AddChild(leaf, u"Tip");
    EXPECT_EQ(SetText(leaf, u"Text", u"old"), S_OK);

    const NodePtr alone = Open(AcnCloneNode, branch.get(), 0u, 0u);
    EXPECT_FALSE(Open(AcnGetChildByIndex, alone.get(), 0u));
    EXPECT_FALSE(Open(AcnGetParent, alone.get()));
    EXPECT_EQ(FullPath(alone), u"\\Root\\Branch");
    const NodePtr oneLevel = Open(AcnCloneNode, branch.get(), 1u, 0u);
    EXPECT_FALSE(Open(AcnGetChildByIndex, Open(AcnGetChildByIndex, oneLevel.get(), 0u).get(), 0u));

    const NodePtr whole = Open(AcnCloneNode, branch.get(), AcnWholeTree, 0u);
    const NodePtr leafCopy = Open(AcnGetChildByName, whole.get(), u"Leaf");
    EXPECT_EQ(SetText(leaf, u"Text", u"new"), S_OK);
    char16_t text[4] = u"???";
    std::uint32_t size = sizeof(text);
    EXPECT_EQ(AcnGetAttribute(leafCopy.get(), u"Text", &AcnTypeWideText, text, &size, nullptr), S_OK);
    EXPECT_EQ(std::u16string(text), u"old");
    const NodePtr again = Open(AcnCloneNode, leafCopy.get(), AcnWholeTree, 0u);
    EXPECT_EQ(FullPath(Open(AcnGetChildByName, again.get(), u"Tip")), u"\\Root\\Branch\\Leaf\\Tip");

    const NodePtr other = NewNode(u"Other");
    EXPECT_EQ(AcnAppendChild(other.get(), whole.get()), S_OK);
    EXPECT_EQ(FullPath(leafCopy), u"\\Other\\Branch\\Leaf");
}

TEST_F(NodeFabric, ReportsSizesAndKeepsToTheRoomItIsGiven) {
    const NodePtr node = NewNode(u"Name", u"Type!");
    EXPECT_EQ(SetText(node, u"B", u""), S_OK);
    EXPECT_EQ(SetText(node, u"A", u""), S_OK);
    EXPECT_EQ(SetText(node, u"B", u"again"), S_OK);
    const auto names = [&](char16_t* buffer, std::uint32_t* size) {
        return AcnGetAttributeNames(node.get(), buffer, size);
    };
    EXPECT_EQ(ReadText(names), std::u16string(u"B\0A\0", 4));
    EXPECT_EQ(ReadText([&](char16_t* buffer, std::uint32_t* size) { return AcnGetNodeType(node.get(), buffer, size); }),
              u"Type!");

    char16_t room[8] = u"???????";
    std::uint32_t size = 4;
    EXPECT_EQ(AcnGetNodeName(node.get(), 0, room, &size), BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(room[0], u'?');
    EXPECT_EQ(AcnGetNodeName(node.get(), 1, room, &size), E_INVALIDARG);
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
            std::int64_t read = 0;
            std::uint32_t size = sizeof(read);
            std::uint16_t outType = 99;
            const HRESULT code = AcnGetAttribute(node.get(), u"A", &type, &read, &size, &outType);
            if (std::ranges::find(row.readableAs, type) == row.readableAs.end()) {
                EXPECT_EQ(code, DATATYPE_MISMATCH);
                continue;
            }
            if (type == AcnTypeInt32) read = static_cast<std::int32_t>(read);
            EXPECT_EQ(code, S_OK);
            EXPECT_EQ(read, row.value);
            EXPECT_EQ(size, sizeOf(type));
            EXPECT_EQ(outType, type);
        }
    }
}

TEST_F(NodeFabric, ReadsATextRawAndTestsForExistence) {
    const NodePtr node = NewNode(u"Node");
    ASSERT_EQ(AcnSetAttribute(node.get(), u"T", AcnTypeText, u"ab", 6), S_OK);
    char16_t room[4] = u"???";
    std::uint32_t size = 5;
    std::uint16_t type = 0;
    EXPECT_EQ(AcnGetAttribute(node.get(), u"T", nullptr, room, &size, &type), BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(AcnGetAttribute(node.get(), u"T", nullptr, room, &size, &type), S_OK);
    EXPECT_EQ(std::u16string(room), u"ab");
    EXPECT_EQ(type, AcnTypeText);
    size = 0;
    EXPECT_EQ(AcnGetAttribute(node.get(), u"T", &AcnTypeWideText, nullptr, &size, nullptr), BUFFER_TOO_SMALL);
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(AcnGetAttribute(node.get(), u"T", &AcnTypeInt32, room, &size, nullptr), DATATYPE_MISMATCH);
    EXPECT_EQ(AcnGetAttribute(node.get(), u"T", nullptr, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(AcnGetAttribute(node.get(), u"t", nullptr, nullptr, nullptr, nullptr), NOT_FOUND);
}

TEST_F(NodeFabric, RefusesBytesThatAreNoValueOfTheType) {
    const NodePtr node = NewNode(u"Node");
    const unsigned char two[16] = {2};
    struct Row {
        std::uint16_t type;
        std::uint32_t size;
    };
    for (const auto [type, size] : {Row{0, 4}, Row{5, 4}, Row{8, 4}, Row{3, 8}, Row{4, 2}, Row{6, 4}, Row{7, 4},
                                    Row{7, 1}, Row{1, 0}, Row{2, 3}, Row{2, 2}}) {
        EXPECT_EQ(AcnSetAttribute(node.get(), u"A", type, two, size), E_INVALIDARG) << type << ", " << size;
    }
    EXPECT_EQ(AcnSetAttribute(node.get(), u"", AcnTypeInt32, two, 4), E_INVALIDARG);
    EXPECT_EQ(AcnSetAttribute(node.get(), u"A", AcnTypeInt32, nullptr, 4), E_POINTER);
    EXPECT_EQ(AcnGetAttribute(node.get(), u"A", nullptr, nullptr, nullptr, nullptr), NOT_FOUND);
}

TEST_F(NodeFabric, AnswersNullHandlesWithTheirCodes) {
    AcnHandle out = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(AcnGetAttribute(nullptr, u"A", nullptr, nullptr, nullptr, nullptr), NOT_FOUND);
    EXPECT_EQ(AcnGetChildByIndex(nullptr, 0, &out), NOT_FOUND);
    EXPECT_EQ(AcnGetChildByName(nullptr, u"A", &out), NOT_FOUND);
    EXPECT_EQ(AcnDuplicateNodeHandle(nullptr, &out), E_INVALIDARG);
    EXPECT_EQ(AcnCloneNode(nullptr, 0, 0, &out), E_INVALIDARG);
    EXPECT_EQ(AcnGetNodeName(nullptr, 0, nullptr, &size), E_INVALIDARG);
    EXPECT_EQ(AcnSetAttribute(nullptr, u"A", AcnTypeBool, "", 1), E_INVALIDARG);
}

TEST_F(NodeFabric, HoldsAChainThatIsDeeperThanTheCallStack) {
    constexpr std::size_t Depth = 300'000;
    NodePtr root = NewNode(u"x");
    NodePtr end = Open(AcnDuplicateNodeHandle, root.get());
    for (std::size_t level = 1; level < Depth; ++level) end = AddChild(end, u"x");
    NodePtr clone = Open(AcnCloneNode, root.get(), AcnWholeTree, 0u);
    root.reset();
    EXPECT_EQ(FullPath(end).size(), 2 * Depth);
    end.reset();  // the count goes up the whole chain, then the tree goes
    while (NodePtr next = Open(AcnGetChildByIndex, clone.get(), 0u)) clone = std::move(next);
    EXPECT_EQ(FullPath(clone).size(), 2 * Depth);
}

}  // namespace
