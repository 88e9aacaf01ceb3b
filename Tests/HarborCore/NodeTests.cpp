#include "Common/Base/Format.h"
#include "Common/Logging/Log.h"
#include "Common/Nodes/HiddenNodeAttrs.h"
#include "Common/Nodes/NodeDump.h"
#include "Stage.h"
#include "Support/NextDefinition.h"
#include "Support/StoreFixture.h"

namespace {

// What the next dumps are, in place of the store's text, and the flags of the last one.
std::optional<std::string> dumpOfStore;
std::uint32_t dumpFlags = 0;

}  // namespace

Harbor::HRESULT AcnStartSerialization(std::int32_t kind, std::uint32_t flags, AcnSerializationCallback callback,
                                      void* user, AcnContext* out) {
    static const auto next = NextDefinitionOf(&AcnStartSerialization, __func__);
    dumpFlags = flags;
    if (!dumpOfStore) return next(kind, flags, callback, user, out);
    EXPECT_EQ(callback(dumpOfStore->data(), static_cast<std::uint32_t>(dumpOfStore->size()), user), Harbor::S_OK);
    const AcnSerializationCallback discard = [](const void*, std::uint32_t, void*) { return Harbor::S_OK; };
    return next(kind, flags, discard, nullptr, out);
}

namespace Harbor {
namespace {

using Stage::CodeThrownBy;

ACNode NewNode(const WideChar* name, const WideChar* type = nullptr) {
    ACNode node;
    node.Create(name, type);
    return node;
}

ACNode AddChild(const ACNode& parent, const WideChar* name, const WideChar* type = nullptr) {
    ACNode child = NewNode(name, type);
    EXPECT_EQ(AcnAppendChild(parent.Handle(), child.Handle()), S_OK);
    return child;
}

class Node : public StoreTest {};

TEST_F(Node, ReadsTextsOfAnyLength) {
    for (const std::size_t length : {0u, 1u, 126u, 127u, 128u, 129u, 5000u}) {
        const WideString text(length, u'\u6F22');
        ACNode node = NewNode(text.c_str(), text.c_str());
        node.SetText(u"measured", text.c_str(), MeasureText);
        node.SetText(u"counted", text.c_str(), static_cast<std::uint32_t>(length));
        EXPECT_EQ(node.GetFullPath(), u"\\" + node.GetName(0));
        WideString read = u"before";
        EXPECT_TRUE(node.TryGetText(u"measured", read));
        for (const WideString& got : {read, node.GetText(u"counted"), node.GetName(0), node.GetType()})
            EXPECT_EQ(got, text);
        std::vector<std::uint8_t> bytes(length % 2 * 1000, 0xFF);
        std::uint16_t type = 0;
        EXPECT_TRUE(node.ReadRawAttribute(u"measured", bytes, type));
        EXPECT_EQ(type, AcnTypeWideText);
        ASSERT_EQ(bytes.size(), (length + 1) * sizeof(WideChar));
        EXPECT_EQ(std::memcmp(bytes.data(), text.c_str(), bytes.size()), 0);
    }
}

TEST_F(Node, DistinguishesAMissingAttributeFromAFailure) {
    ACNode node = NewNode(u"n");
    node.SetInt32(u"number", -5);
    node.SetInt64(u"large", std::int64_t{1} << 40);
    std::uint32_t number = 0;
    std::int64_t large = 0;
    WideString text = u"before";
    EXPECT_EQ(node.GetInt64(u"number"), -5);
    EXPECT_TRUE(node.HasAttribute(u"large"));
    EXPECT_FALSE(node.HasAttribute(u"none") || node.TryGetUInt32(u"none", number) || node.TryGetInt64(u"none", large));
    EXPECT_FALSE(node.TryGetText(u"none", text));
    EXPECT_EQ(text + ACNode().GetName(0) + ACNode().GetType() + ACNode().GetAttributeNames(), u"");
    EXPECT_FALSE(node.FindChild(u"none") || node.FindChild(std::uint64_t{1}));
    const std::pair<HRESULT, HRESULT> failures[] = {
        {CodeThrownBy([&] { return node.GetText(u"none"); }), NOT_FOUND},
        {CodeThrownBy([&] { return node.TryGetUInt32(u"large", number); }), DATATYPE_MISMATCH},
        {CodeThrownBy([&] { return node.TryGetText(u"number", text); }), DATATYPE_MISMATCH},
        {CodeThrownBy([&] { return node.SetText(u"", u"", 0), 0; }), E_INVALIDARG},
        {CodeThrownBy([&] { return ACNode().GetChildCount(); }), E_INVALIDARG},
        {CodeThrownBy([&] { return node.GetParent(); }), NOT_FOUND},
        {CodeThrownBy([&] { return node.GetChild(u"none"); }), NOT_FOUND},
        {CodeThrownBy([&] { return node.GetChild(std::uint64_t{1}); }), NOT_FOUND}};
    for (const auto& [thrown, expected] : failures) EXPECT_EQ(thrown, expected);
}

TEST_F(Node, FindsANodeByItsPath) {
    const ACNode root = NewNode(u"Root"), a = AddChild(root, u"A"), ab = AddChild(root, u"Ab"), b = AddChild(a, u"B"),
                 c = AddChild(b, u"C"), none;
    // The start, the path, and the result without flags and with NotAboveThisNode.
    const std::tuple<ACNode, const WideChar*, ACNode, ACNode> rows[] = {{a, u"", a, a},
                                                                        {a, u"B\\C", c, c},
                                                                        {a, u"B\\missing\\C", none, none},
                                                                        {a, u"\\Root\\A\\B\\C", c, c},
                                                                        {a, u"\\Root\\Ab", ab, none},
                                                                        {ab, u"\\Root\\A", a, none},
                                                                        {c, u"\\Root", root, none},
                                                                        {a, u"\\R", none, none},
                                                                        {a, u"\\", none, none}};
    ACNode copy;
    for (const auto& [from, path, found, foundBelow] : rows) {
        for (const std::uint32_t flags : {0u, NotAboveThisNode}) {
            const ACNode& expected = flags == 0 ? found : foundBelow;
            copy = expected;
            EXPECT_EQ(copy.Handle(), expected.Handle());
            EXPECT_EQ(from.FindByPath(path, flags).Handle(), expected.Handle()) << ToUtf8(path) << flags;
            EXPECT_EQ(
                CodeThrownBy([&, &start = from, &way = path] { return start.FindByPath(way, flags | MustBeFound); }),
                expected ? S_OK : NOT_FOUND);
        }
    }
    EXPECT_EQ(CodeThrownBy([&] { return a.FindByPath(static_cast<const WideChar*>(nullptr), 0); }), E_POINTER);
}

// A root of type "Server", accounts below it that have the same path, and one below these. Three attributes of each
// contain a secret.
struct Tree {
    Tree() {
        for (ACNode* const node : {&root, &first, &second, &nameless, &inner}) {
            for (const auto* const name : {u"Password", u"Token", u"Open"}) node->SetText(name, u"5ecret", MeasureText);
        }
    }
    const ACNode above = NewNode(u"Above");
    ACNode root = AddChild(above, u"Root", u"Server"), first = AddChild(root, u"Same", u"Account"),
           second = AddChild(root, u"Same", u"Account"), nameless = AddChild(root, u"", u"Account"),
           inner = AddChild(second, u"a\\b", u"Account");
};

std::size_t Count(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != text.npos; at += part.size()) ++count;
    return count;
}

TEST_F(Node, IsDumpedWithHiddenAttributesMasked) {
    const Tree tree;
    const std::string heading = ToUtf8(FormatWide(u"ACNode[0x%p]:\r\n", static_cast<const void*>(tree.root.Handle())));
    // The rules, and how many they mask of all 15 attributes and of the root's 3.
    const std::tuple<const WideChar*, std::size_t, std::size_t> rows[] = {
        {u"", 0, 0},
        {u"Account:Password", 4, 0},
        {u";; Account\t:\r\n Password , ,Token;", 8, 0},
        {u"*:Password,Token,Open", 15, 3},
        {u"*:Password;Account:Password;Account:Token", 9, 1},
        {u"account:Password;Account:password;Other:Open", 0, 0}};
    for (const auto& [rules, masked, maskedInRoot] : rows) {
        for (const bool deep : {true, false}) {
            SCOPED_TRACE(ToUtf8(rules) + (deep ? " deep" : " shallow"));
            const std::size_t expected = deep ? masked : maskedInRoot;
            ACNodeLogView view(ACNode(), deep ? DumpDepth::WholeTree : DumpDepth::NodeOnly);
            view.node = HiddenNodeAttrs(HiddenNodeAttrs::ParseRules(rules)).Mask(tree.root, view.depth);
            const std::string text = ToUtf8(DumpNode(view));
            EXPECT_EQ(Count(text, "\"********\""), expected);
            EXPECT_EQ(Count(text, "5ecret"), (deep ? 15 : 3) - expected);
            EXPECT_EQ(text.starts_with(heading), expected == 0) << "only a masked node may be cloned";
            EXPECT_EQ(Count(text, "nr>"), 0u);
        }
        EXPECT_EQ(tree.inner.GetText(u"Password"), u"5ecret") << "the original must not change";
    }
    for (const auto* const bad : {u"Account", u"Account:", u":Password", u"A:b:c", u"A:b; ", u"A:b;c"}) {
        EXPECT_EQ(CodeThrownBy([&] { return HiddenNodeAttrs::ParseRules(bad); }), E_INVALIDARG) << ToUtf8(bad);
    }
}

TEST_F(Node, IsDumpedWithoutTheMarkersOfTheStore) {
    const ACNode node = NewNode(u"n");
    ACNodeLogView view(ACNode(), DumpDepth::WholeTree);
    view.node = node;
    const std::string heading = ToUtf8(FormatWide(u"ACNode[0x%p]:\r\n", static_cast<const void*>(node.Handle())));
    // The store's text, and what remains of it.
    const std::pair<const char*, const char*> rows[] = {{"<nr>\r\n\t<n/>\r\n</nr>\r\n", "\t<n/>"},
                                                        {"<nr>\n<n/>\n</nr>\n\t\t", "<n/>"},
                                                        {"<nr> <n/>\t</nr>", " <n/>\t"},
                                                        {"<n/>\r\n \t", "<n/>"},
                                                        {"\n<n/>", "\n<n/>"},
                                                        {"<n/></nr>", "<n/>"},
                                                        {"<nr><n/>", "<n/>"},
                                                        {"<nr>\r\n</nr>\r\n", ""},
                                                        {"<nr>", ""},
                                                        {"</nr>\n", ""},
                                                        {" \r\n\t", ""},
                                                        {"", ""}};
    for (const auto& [text, expected] : rows) {
        dumpOfStore = text;
        EXPECT_EQ(ToUtf8(DumpNode(view)), heading + expected) << text;
        dumpOfStore = text + std::string(1, '\0');
        EXPECT_EQ(ToUtf8(DumpNode(view)), heading + expected) << text << " and a terminator";
    }
    dumpOfStore.reset();
    EXPECT_EQ(ToUtf8(DumpNode(view)), heading + "  <node name=\"n\" type=\"\"/>");
    EXPECT_EQ(dumpFlags, 257u);
}

constexpr const char* marked = "] ... (***EXCEPTION***)";

void LogTree(const char* rules, const char* end, std::size_t masked) {
    const ScopedVariable setting("GS_Logger_HiddenNodeTypeAttrs", std::nullopt);
    const auto file = Stage::ProcessDirectory() / "Host.ini";
    std::shared_ptr<void> unreadable = Stage::MakeUnreadable(file);
    Stage::LogLines log;
    const Tree tree;
    for (const bool readable : {false, true, true}) {
        LOG(Dbg, u"Empty: " << ACNode() << u' ' << tree.root);
        unreadable.reset();
        Stage::WriteText(file, std::string("[Logger]\nHiddenNodeTypeAttrs=") + rules);
        const std::string line = log.Take().at(0);
        EXPECT_THAT(line, testing::AllOf(testing::StartsWith("DBG  Empty: ACNode[<null>] "),
                                         testing::EndsWith(readable ? end : marked)));
        EXPECT_EQ(Count(line, "********"), readable ? masked : 0);
        EXPECT_EQ(Count(line, "5ecret"), readable && masked != 0 ? 15 - masked : 0);
    }
}

TEST_F(Node, IsLoggedOnlyIfTheHidingRulesAreKnown) {
    EXPECT_IN_CHILD(LogTree("*:Password;Account:Token", ">", 9));
    EXPECT_IN_CHILD(LogTree("*:Password;no rule", marked, 0));
}

}  // namespace
}  // namespace Harbor
