// The compare command: trees from files, and what the strategies say.
#include "../Platform/TemporaryDirectory.h"
#include "ChildProcess.h"
#include "Common/Nodes/NodeDump.h"
#include "Common/Text.h"
#include "Host/Failure.h"
#include "Host/NodeFile.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class Trees : public testing::Test {
protected:
    std::string Write(const std::string& name, const std::string& text) {
        WriteAll(directory_ / name, text);
        return directory_ / name;
    }
    std::string WriteItems(const std::string& name, const std::string& items, const std::string& root = "Config") {
        return Write(name, "<nr>\n<node name=\"" + root + "\" type=\"\">\n<node name=\"ScopeItems\" type=\"\">\n" +
                               items + "</node>\n</node>\n</nr>\n");
    }
    static std::string Item(const std::string& name, int depth) {
        return "<node name=\"" + name + "\" type=\"item\"><attribute name=\"Depth\" type=\"uint32\" value=\"" +
               std::to_string(depth) + "\"/><node name=\"Filter\" type=\"\"/></node>\n";
    }
    static std::string DumpOf(const Harbor::ACNode& node) {
        Harbor::WideStream stream;
        stream << node;
        const std::string text = Harbor::ToUtf8(stream.Text());
        return text.substr(text.find('\n') + 1);
    }

    TemporaryDirectory directory_;
};

TEST_F(Trees, ComeBackAsTheyWereDumped) {
    Harbor::ACNode tree;
    tree.Create(u"A & <B> \"\u00FC\U0001F600", u"type\r\n\t");
    tree.SetText(u"text", u" two\nlines ", Harbor::MeasureText);
    tree.SetText(u"empty", u"", Harbor::MeasureText);
    tree.SetInt32(u"int32", -2147483647 - 1);
    tree.SetInt64(u"int64", 9223372036854775807);
    tree.SetBool(u"bool", true);
    const std::string dump = DumpOf(tree);
    for (const std::string& text : {dump, "<nr>\n" + dump + "\n</nr>\n", "ACNode[0x00007F0000000000]:\r\n" + dump,
                                    "<nr>" + dump + "</nr>" + std::string(1, '\0')}) {
        EXPECT_EQ(DumpOf(Host::ReadNodeFile(Write("tree.xml", text))), dump);
    }
}

TEST_F(Trees, MayBeDeeperThanACallStack) {
    constexpr int levels = 200'000;
    std::string text;
    for (int level = 0; level < levels; ++level) text += "<node name=\"n\" type=\"\">";
    for (int level = 0; level < levels; ++level) text += "</node>";
    Harbor::ACNode node = Host::ReadNodeFile(Write("deep.xml", text));
    int depth = 0;
    for (; node; ++depth) node = node.GetChild(u"n", false);
    EXPECT_EQ(depth, levels);
}

TEST_F(Trees, ThatAreWrongAreRefusedWithFileLineAndReason) {
    const std::string root = "<node name=\"a\" type=\"\">\n";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", ":1: there is no <node>"},
        {"<nr>\n</nr>", ":1: there is no <node>"},
        {root, ":1: "},
        {root + "</node>\n<node name=\"b\" type=\"\"/>", ":3: a second tree"},
        {"<nr>\n" + root + "</node>\n</nr>\n<x/>", ":5: something stands behind </nr>"},
        {"<nr>\n<tree/></nr>", ":2: expected <node>"},
        {root + "<node name=\"b\"/></node>", ":2: <node> lacks type"},
        {root + "<attribute type=\"text\" value=\"\"/></node>", ":2: <attribute> lacks name"},
        {root + "<attribute name=\"x\" type=\"float\" value=\"1\"/></node>", ":2: unknown type 'float'"},
        {root + "<attribute name=\"x\" type=\"int32\" value=\"2147483648\"/></node>", ":2: '2147483648' is no int32"},
        {root + "<attribute name=\"x\" type=\"uint32\" value=\"-1\"/></node>", ":2: '-1' is no uint32"},
        {root + "<attribute name=\"x\" type=\"bool\" value=\"1\"/></node>", ":2: a bool is true or false"},
        {root + "<attribute name=\"\" type=\"text\" value=\"\"/></node>", ":2: an attribute without a name"},
        {root + "<attribute name=\"x\" type=\"text\" value=\"\"/>\n<attribute name=\"x\" type=\"text\" "
                "value=\"\"/></node>",
         ":3: a second attribute 'x'"},
        {root + "<other/></node>", ":2: expected <attribute"},
        {root + "<node name=\"\xFF\" type=\"\"/></node>", ":2: name isn't UTF-8"},
        {root + std::string(1, '\0') + "</node>", ":2: a 0 character"}};
    for (const auto& [text, reason] : cases) {
        const std::string file = Write("wrong.xml", text);
        try {
            (void)Host::ReadNodeFile(file);
            ADD_FAILURE() << "accepted: " << text;
        } catch (const Host::BadInput& refusal) {
            EXPECT_THAT(refusal.what(), HasSubstr(file + reason));
        }
    }
    EXPECT_EQ(RunHost({"compare", directory_ / "wrong.xml", directory_.Path()}).code, 2);
}

TEST_F(Trees, TriggerForNewAndChangedItemsAlone) {
    struct Case {
        std::string oldItems, newItems, reason;
        int code;
    };
    const std::string a = Item("A", 1);
    const std::vector<Case> cases{{a, a, "none of the 1 items is new or changed", 3},
                                  {a + Item("B", 1), a, "none of the 1 items is new or changed", 3},
                                  {a, a + Item("B", 1), "item 'B' is new", 0},
                                  {a + Item("B", 1), a + Item("B", 2), "item 'B' was changed", 0}};
    for (const auto& [oldItems, newItems, reason, code] : cases) {
        const auto result = RunHost({"compare", WriteItems("old.xml", oldItems), WriteItems("new.xml", newItems)});
        EXPECT_EQ(result.code, code) << reason;
        EXPECT_THAT(
            result.lines,
            ElementsAre("ScopeItemUpdateStrategy: " + std::string(code == 0 ? "trigger, " : "no trigger, ") + reason,
                        "DefaultTriggerStrategy: no trigger, it never triggers"));
    }
}

}  // namespace
