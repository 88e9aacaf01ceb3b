#include <algorithm>
#include <map>
#include <random>

#include "NodeFabric/Authoring.h"
#include "Subsystems/ActionManager/DefaultTriggerStrategy.h"
#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"
#include "TestSupport.h"

namespace {

using Value = std::pair<std::uint16_t, std::int32_t>;  // with its type
using Attributes = std::vector<std::pair<WideString, Value>>;

// A plain tree, from which the nodes of the store are built.
struct Tree {
    WideString name;
    Attributes attributes;
    std::vector<Tree> children;

    ACNode Build() const {
        ACNode node;
        node.Create(name.c_str(), nullptr);
        for (const auto& [attribute, value] : attributes) {
            EXPECT_EQ(AcnSetAttribute(node.Handle(), attribute.c_str(), value.first, &value.second, 4), S_OK);
        }
        for (const Tree& child : children) EXPECT_EQ(AcnAppendChild(node.Handle(), child.Build().Handle()), S_OK);
        return node;
    }
    const Tree* Find(const WideString& child) const {
        const auto found = std::ranges::find(children, child, &Tree::name);
        return found != children.end() ? &*found : nullptr;
    }
};

ACNode Config(const std::vector<Tree>& items, const WideString& root = u"Root") {
    return Tree{root, {}, {{u"ScopeItems", {}, items}}}.Build();
}

// What the strategy must find, over plain trees.
bool Same(const Tree& a, const Tree& b) {
    using Sorted = std::map<WideString, Value>;
    if (a.name != b.name || a.children.size() != b.children.size()) return false;
    if (Sorted(a.attributes.begin(), a.attributes.end()) != Sorted(b.attributes.begin(), b.attributes.end())) {
        return false;
    }
    return std::ranges::equal(a.children, b.children, [&](const Tree& childA, const Tree& childB) {
        return b.Find(childA.name) == &childB && Same(childA, childB);
    });
}

bool MustTrigger(const Tree& before, const Tree& after) {
    return std::ranges::any_of(after.children, [&](const Tree& item) {
        const Tree* const old = before.Find(item.name);
        return old == nullptr || !Same(item, *old);
    });
}

class RandomTrees {
public:
    Tree Make(int depth) {
        Tree tree{Name(), {}, {}};
        for (int i = Below(3); i > 0; --i) SetAttribute(tree);
        for (int i = depth > 0 ? Below(4) : 0; i > 0; --i) tree.children.push_back(Make(depth - 1));
        return tree;
    }
    // Makes one change, at a random place.
    void Change(Tree& tree) {
        if (!tree.children.empty() && Below(3) != 0) return Change(tree.children[Index(tree.children)]);
        const int kind = Below(7);
        if (kind == 0) tree.name = Name();
        if (kind == 1) SetAttribute(tree);
        if (kind == 2 && !tree.attributes.empty()) tree.attributes.pop_back();
        if (kind == 3) std::ranges::reverse(tree.attributes);
        if (kind == 4) tree.children.push_back(Make(1));
        if (tree.children.empty()) return;
        if (kind == 5) tree.children.erase(tree.children.begin() + Below(tree.children.size()));
        if (kind == 6) std::swap(tree.children.front(), tree.children[Index(tree.children)]);
    }

private:
    int Below(std::size_t limit) { return static_cast<int>(random_() % limit); }
    std::size_t Index(const std::vector<Tree>& trees) { return random_() % trees.size(); }
    WideString Name() { return WideString(1, static_cast<char16_t>(u'a' + Below(8))); }
    void SetAttribute(Tree& tree) {
        const WideString name = Name();
        std::erase_if(tree.attributes, [&](const auto& attribute) { return attribute.first == name; });
        tree.attributes.push_back({name, {Below(2) == 0 ? AcnTypeInt32 : AcnTypeUInt32, Below(2)}});
    }

    std::mt19937 random_{20240305};
};

class UpdateStrategies : public LeakChecked {
protected:
    const ComponentPtr<ITriggerStrategy> byScope_ = Create<ScopeItemUpdateStrategy, ITriggerStrategy>();
    const ComponentPtr<ITriggerStrategy> byDefault_ = Create<DefaultTriggerStrategy, ITriggerStrategy>();
};

}  // namespace

TEST_F(UpdateStrategies, SayWhyTheyTriggerOrDont) {
    const Tree a{u"a", {{u"x", {AcnTypeInt32, 1}}}, {}}, b{u"b", {}, {}}, changedA{u"a", {}, {}};
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

TEST_F(UpdateStrategies, AgreeWithAPlainComparisonOfRandomTrees) {
    RandomTrees trees;
    int triggered = 0;
    constexpr int rounds = 3000;
    for (int round = 0; round < rounds; ++round) {
        const Tree before = trees.Make(4);
        Tree after = before;
        trees.Change(after);
        const bool expected = MustTrigger(before, after);
        triggered += expected ? 1 : 0;
        const ACNode oldConfig = Config(before.children), newConfig = Config(after.children);
        ASSERT_EQ(byScope_->OnConfigurationUpdate(oldConfig.Handle(), newConfig.Handle()), expected ? S_OK : S_FALSE)
            << "round " << round;
    }
    EXPECT_GT(triggered, rounds / 4);
    EXPECT_LT(triggered, rounds * 3 / 4);
}
