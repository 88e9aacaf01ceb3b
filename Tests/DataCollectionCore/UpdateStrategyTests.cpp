#include "NodeFabric/Authoring.h"
#include "Subsystems/ActionManager/DefaultTriggerStrategy.h"
#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"
#include "TestSupport.h"

namespace {

using Value = std::pair<std::uint16_t, WideString>;  // type and bytes
using Attributes = std::vector<std::pair<WideString, Value>>;

// A plain tree from which nodes of the store are built.
struct Tree {
    WideString name;
    Attributes attributes;
    std::vector<Tree> children;

    ACNode Build() const {
        ACNode node;
        node.Create(name.c_str(), nullptr);
        for (const auto& [attribute, value] : attributes) {
            const auto& [type, bytes] = value;
            const auto size = static_cast<std::uint32_t>(bytes.size() * sizeof(WideChar));
            EXPECT_EQ(AcnSetAttribute(node.Handle(), attribute.c_str(), type, bytes.data(), size), S_OK);
        }
        for (const Tree& child : children) EXPECT_EQ(AcnAppendChild(node.Handle(), child.Build().Handle()), S_OK);
        return node;
    }
};

ACNode Config(const std::vector<Tree>& items, const WideString& root = u"Root") {
    return Tree{root, {}, {{u"ScopeItems", {}, items}}}.Build();
}

class UpdateStrategies : public LeakChecked {
protected:
    const ComponentPtr<ITriggerStrategy> byScope_ = Create<ScopeItemUpdateStrategy, ITriggerStrategy>();
    const ComponentPtr<ITriggerStrategy> byDefault_ = Create<DefaultTriggerStrategy, ITriggerStrategy>();
};

}  // namespace

TEST_F(UpdateStrategies, TriggerOnAddedAndChangedItemsAndLogTheReason) {
    const Tree a{u"a", {{u"x", {AcnTypeInt32, {1, 0}}}}, {}}, b{u"b", {}, {}}, changedA{u"a", {}, {}};
    const ACNode none, without = Tree{u"Root", {}, {}}.Build(), empty = Config({}), onlyA = Config({a});
    const std::string same = "DBG All current ScopeItems are in the same state";
    const std::string deleted = "DBG All items are deleted - no trigger";
    const std::string added = "DBG New ScopeItem added: ACNode[0x*";
    const Texts changed{"DBG ScopeItem was changed", "DBG OldValue: ACNode[0x*", "DBG NewValue: ACNode[0x*"};
    const struct {
        const ACNode before, after;
        HRESULT answer;
        Texts lines;
    } table[] = {
        {none, onlyA, S_FALSE, {}},
        {onlyA, none, S_FALSE, {deleted}},
        {without, without, S_FALSE, {deleted}},
        {onlyA, without, S_FALSE, {deleted}},
        {without, empty, S_OK, {"DBG There is no items in old version but there is items in new - trigger"}},
        {onlyA, empty, S_FALSE, {same}},
        {Config({a, b}), onlyA, S_FALSE, {same}},
        {Config({a, b}), Config({b, a}), S_FALSE, {same}},
        {onlyA, Config({b, changedA}), S_OK, {added}},
        {onlyA, Config({changedA, b}), S_OK, changed},
        {onlyA, Config({a}, u"Moved"), S_OK, changed},
    };
    CapturedLog log("DBG");
    for (const auto& row : table) {
        EXPECT_EQ(byScope_->OnConfigurationUpdate(row.before.Handle(), row.after.Handle()), row.answer);
        EXPECT_TRUE(log.Wrote(row.lines));
        EXPECT_EQ(byDefault_->OnConfigurationUpdate(row.before.Handle(), row.after.Handle()), S_FALSE);
        EXPECT_TRUE(log.Wrote({}));
    }
    for (const auto& strategy : {byScope_, byDefault_}) EXPECT_EQ(strategy->ReservedOperation(this), S_OK);
}

TEST_F(UpdateStrategies, CompareTheWholeSubtreesOfItems) {
    const Value one{AcnTypeInt32, {1, 0}}, two{AcnTypeInt32, {2, 0}}, other{AcnTypeUInt32, {1, 0}};
    const Value text{AcnTypeWideText, WideString(99, u'x') + u'\0'};  // longer than a reader's first buffer
    const Tree leaf{u"leaf", {}, {}}, twin{u"leaf", {{u"x", one}}, {}}, deep{u"deep", {}, {leaf}};
    const auto item = [](const Attributes& attributes, const std::vector<Tree>& children) {
        return Tree{u"item", {}, {{u"child", attributes, children}}};
    };
    // Two items, and whether they are equal.
    const std::tuple<Tree, Tree, bool> table[] = {
        {item({{u"x", one}, {u"y", two}}, {deep, leaf}), item({{u"y", two}, {u"x", one}}, {deep, leaf}), true},
        {item({{u"x", one}}, {}), item({{u"x", two}}, {}), false},
        {item({{u"x", one}}, {}), item({{u"x", other}}, {}), false},
        {item({{u"x", one}}, {}), item({{u"y", one}}, {}), false},
        {item({{u"x", text}, {u"y", text}}, {}), item({{u"x", text}, {u"z", text}}, {}), false},
        {item({}, {}), item({{u"x", one}}, {}), false},
        {item({}, {leaf}), item({}, {}), false},
        {item({}, {leaf}), item({}, {twin}), false},
        {item({}, {leaf}), item({}, {deep}), false},
        {item({}, {leaf, deep}), item({}, {deep, leaf}), false},
        {item({}, {{u"deep", {}, {leaf}}}), item({}, {{u"deep", {}, {twin}}}), false},
        // Of children that share a name, only the first is found.
        {item({}, {leaf, leaf}), item({}, {leaf, leaf}), false},
    };
    for (const auto& [a, b, same] : table) {
        for (const auto& [before, after] : {std::pair(a, b), std::pair(b, a)}) {
            const ACNode oldConfig = Config({before}), newConfig = Config({after});
            EXPECT_EQ(byScope_->OnConfigurationUpdate(oldConfig.Handle(), newConfig.Handle()), same ? S_FALSE : S_OK);
        }
    }
}
