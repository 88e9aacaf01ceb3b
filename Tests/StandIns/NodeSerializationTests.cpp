#include <random>

#include "StoreFixture.h"

using namespace Harbor;

namespace {

class NodeSerialization : public StoreTest {};

std::string Dump(const NodePtr& node, std::uint32_t depth = AcnWholeTree) {
    std::string text;
    EXPECT_EQ(DumpTo([&](auto block) { return text += block, S_OK; }, node.get(), depth), S_OK);
    return text;
}

TEST_F(NodeSerialization, WritesNodesAttributesAndChildrenDownToTheDepth) {
    const NodePtr root = NewNode(u"Root", u"Kind");
    const std::int64_t minusTwo = -2;
    EXPECT_EQ(SetText(root, u"Text", u"t"), S_OK);
    EXPECT_EQ(AcnSetAttribute(root.get(), u"I", AcnTypeInt32, &minusTwo, 4), S_OK);
    EXPECT_EQ(AcnSetAttribute(root.get(), u"U", AcnTypeUInt32, &minusTwo, 4), S_OK);
    EXPECT_EQ(AcnSetAttribute(root.get(), u"L", AcnTypeInt64, &minusTwo, 8), S_OK);
    EXPECT_EQ(AcnSetAttribute(root.get(), u"B", AcnTypeBool, "\1", 1), S_OK);
    AddChild(AddChild(root, u"Child"), u"Leaf");
    const std::string begin = R"(<nr>
  <node name="Root" type="Kind">
    <attribute name="Text" type="text" value="t"/>
    <attribute name="I" type="int32" value="-2"/>
    <attribute name="U" type="uint32" value="4294967294"/>
    <attribute name="L" type="int64" value="-2"/>
    <attribute name="B" type="bool" value="true"/>
)";
    const std::string end = std::string("  </node>\n</nr>\n") + '\0';
    EXPECT_EQ(Dump(root, 0), begin + end);
    EXPECT_EQ(Dump(root, 1), begin + "    <node name=\"Child\" type=\"\"/>\n" + end);
    EXPECT_EQ(Dump(root), begin + R"(    <node name="Child" type="">
      <node name="Leaf" type=""/>
    </node>
)" + end);
}

// Random runs of the pieces move each of them over the writer's inner borders.
TEST_F(NodeSerialization, WritesWellFormedUtf8WhateverTheTextHolds) {
    const std::pair<std::u16string, std::string> pieces[] = {
        {u"a&<>\"'", "a&amp;&lt;&gt;&quot;'"},
        {u"\t\r\n\x7F", "&#9;&#13;&#10;\x7F"},
        {u"\x01\x1F\xFFFD\xFFFE", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {std::u16string(1, u'\0'), "\xEF\xBF\xBD"},
        {u"\u0080\u07FF\u0800\uD7FF", "\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF"},
        {u"\U0001F600\U0010FFFF", "\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"},
        {u"\xD83Dx", "\xEF\xBF\xBDx"},
        {u"x\xDE00\xD83D\xDE00", "x\xEF\xBF\xBD\xF0\x9F\x98\x80"},
    };
    const NodePtr node = NewNode(u"");
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        std::u16string text;
        std::string expected = "value=\"";
        while (text.size() < 1200) {
            const auto& [piece, bytes] = pieces[random() % std::size(pieces)];
            text += piece;
            expected += bytes;
        }
        text += u'\xD83D';
        expected += "\xEF\xBF\xBD\"/>";
        ASSERT_EQ(SetText(node, u"A", text), S_OK);
        ASSERT_NE(Dump(node).find(expected), std::string::npos) << round;
    }
}

}  // namespace
