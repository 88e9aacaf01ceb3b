#include <functional>

#include "StoreFixture.h"

using namespace Harbor;

namespace {

class NodeSerialization : public StoreTest {
protected:
    using Sink = std::function<HRESULT(std::string_view)>;

    AcnContext Start(Sink sink) {
        sink_ = std::move(sink);
        AcnContext context = nullptr;
        EXPECT_EQ(AcnStartSerialization(1, 257, &NodeSerialization::OnBlock, this, &context), S_OK);
        return context;
    }

    std::string Dump(const NodePtr& node, std::uint32_t depth = AcnWholeTree) {
        std::string text;
        const AcnContext context = Start([&](std::string_view block) {
            EXPECT_LE(block.size(), 16u * 1024);
            text += block;
            return S_OK;
        });
        const AcnHandle handle = node.get();
        EXPECT_EQ(AcnSerializeNodes(context, &handle, 1, depth), S_OK);
        EXPECT_EQ(AcnFinalizeSerialization(context), S_OK);
        EXPECT_EQ(AcnCloseSerializationContext(context), S_OK);
        return text;
    }

private:
    static HRESULT OnBlock(const void* data, std::uint32_t length, void* user) {
        return static_cast<NodeSerialization*>(user)->sink_({static_cast<const char*>(data), length});
    }

    Sink sink_;
};

TEST_F(NodeSerialization, WritesNodesAttributesAndChildrenDownToTheDepth) {
    const NodePtr root = NewNode(u"Root", u"Kind");
    const std::int64_t minusTwo = -2;
    EXPECT_EQ(SetText(root, u"Text", u"t"), S_OK);
    EXPECT_EQ(AcnSetAttribute(root.get(), u"I", AcnTypeInt32, &minusTwo, 4), S_OK);
    EXPECT_EQ(AcnSetAttribute(root.get(), u"U", AcnTypeUInt32, &minusTwo, 4), S_OK);
    EXPECT_EQ(AcnSetAttribute(root.get(), u"L", AcnTypeInt64, &minusTwo, 8), S_OK);
    EXPECT_EQ(AcnSetAttribute(root.get(), u"B", AcnTypeBool, "\1", 1), S_OK);
    const NodePtr child = AddChild(root, u"Child");
    AddChild(child, u"Leaf");
    AddChild(root, u"Other");
    const std::string attributes = R"(    <attribute name="Text" type="text" value="t"/>
    <attribute name="I" type="int32" value="-2"/>
    <attribute name="U" type="uint32" value="4294967294"/>
    <attribute name="L" type="int64" value="-2"/>
    <attribute name="B" type="bool" value="true"/>
)";
    const std::string begin = "<nr>\n  <node name=\"Root\" type=\"Kind\">\n" + attributes;
    const std::string end = std::string("  </node>\n</nr>\n") + '\0';
    const std::string other = "    <node name=\"Other\" type=\"\"/>\n";
    EXPECT_EQ(Dump(root, 0), begin + end);
    EXPECT_EQ(Dump(root, 1), begin + "    <node name=\"Child\" type=\"\"/>\n" + other + end);
    EXPECT_EQ(Dump(root), begin + R"(    <node name="Child" type="">
      <node name="Leaf" type=""/>
    </node>
)" + other + end);
}

TEST_F(NodeSerialization, WritesWellFormedUtf8WhateverTheTextHolds) {
    struct Row {
        std::u16string_view text;
        std::string expected;
    };
    const char16_t loneHigh[] = {0xD83D, u'x', 0xD83D}, loneLow[] = {0xDE00, 0xD83D, 0xDE00},
                   beyond[] = {0xFFFD, 0xFFFE};
    const Row rows[] = {
        {u"a&<>\"'", "a&amp;&lt;&gt;&quot;'"},
        {u"\t\r\n\x7F", "&#9;&#13;&#10;\x7F"},
        {{u"\x01\0\x1F", 3}, "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {u"\u0080\u07FF\u0800\uD7FF\U0001F600\U0010FFFF",
         "\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"},
        {{loneHigh, 3}, "\xEF\xBF\xBDx\xEF\xBF\xBD"},
        {{loneLow, 3}, "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
        {{beyond, 2}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
    };
    const NodePtr node = NewNode(u"");
    for (const Row& row : rows) {
        // A long run in front moves the text over the writer's inner borders.
        for (std::size_t run = 480; run < 530; ++run) {
            ASSERT_EQ(SetText(node, u"A", std::u16string(run, u'-').append(row.text)), S_OK);
            const std::string value = "value=\"" + std::string(run, '-') + row.expected + "\"/>";
            ASSERT_NE(Dump(node).find(value), std::string::npos) << row.expected;
        }
    }
}

TEST_F(NodeSerialization, EndsWithTheReceiversFailureAndRefusesCallsOutOfOrder) {
    const NodePtr root = NewNode(std::u16string(40'000, u'n').c_str());
    const AcnHandle handles[] = {root.get(), nullptr};
    int calls = 0;
    AcnContext context = Start([&](std::string_view) { return ++calls == 2 ? E_ABORT : S_OK; });
    EXPECT_EQ(AcnSerializeNodes(context, handles, 2, 0), E_INVALIDARG);
    EXPECT_EQ(AcnSerializeNodes(context, handles, 1, 0), E_ABORT);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(AcnFinalizeSerialization(context), E_UNEXPECTED);
    EXPECT_EQ(AcnCloseSerializationContext(context), S_OK);

    context = Start([](std::string_view) -> HRESULT { throw std::bad_alloc(); });
    EXPECT_EQ(AcnSerializeNodes(context, handles, 1, 0), E_OUTOFMEMORY);
    EXPECT_EQ(AcnCloseSerializationContext(context), S_OK);

    context = Start([](std::string_view) { return S_OK; });
    EXPECT_EQ(AcnSerializeNodes(context, handles, 1, 0), S_OK);
    EXPECT_EQ(AcnSerializeNodes(context, handles, 1, 0), E_UNEXPECTED);
    EXPECT_EQ(AcnFinalizeSerialization(context), S_OK);
    EXPECT_EQ(AcnFinalizeSerialization(context), E_UNEXPECTED);
    EXPECT_EQ(AcnCloseSerializationContext(context), S_OK);
}

// The receiver takes apart what is being dumped; the dump must neither crash nor leave an element open.
TEST_F(NodeSerialization, LetsTheReceiverTakeTheTreeApart) {
    NodePtr root = NewNode(u"Root");
    NodePtr branch = AddChild(root, u"Branch");
    const NodePtr twig = AddChild(branch, u"Twig");
    for (int leaf = 0; leaf < 2000; ++leaf) AddChild(twig, u"Leaf");
    std::string text;
    const AcnContext context = Start([&](std::string_view block) {
        if (branch) {
            EXPECT_EQ(AcnRemoveChild(branch.get(), twig.get()), S_OK);
            EXPECT_EQ(AcnRemoveChild(root.get(), branch.get()), S_OK);
            branch.reset();
        }
        text += block;
        return S_OK;
    });
    const AcnHandle handle = root.get();
    EXPECT_EQ(AcnSerializeNodes(context, &handle, 1, AcnWholeTree), S_OK);
    EXPECT_EQ(AcnFinalizeSerialization(context), S_OK);
    EXPECT_EQ(AcnCloseSerializationContext(context), S_OK);
    EXPECT_EQ(FullPath(twig), u"\\Twig");
    EXPECT_TRUE(text.ends_with(std::string("    </node>\n  </node>\n</nr>\n") + '\0'));
}

TEST_F(NodeSerialization, DumpsAChainThatIsDeeperThanTheCallStackInLinearSize) {
    constexpr std::size_t Depth = 200'000;
    const NodePtr root = NewNode(u"x");
    NodePtr end = Open(AcnDuplicateNodeHandle, root.get());
    for (std::size_t level = 1; level < Depth; ++level) end = AddChild(end, u"x");
    EXPECT_LT(Dump(root).size(), Depth * 200);
}

}  // namespace
