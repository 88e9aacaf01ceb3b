// Two configurations that differ in a few places, or in none: the strategy must agree with a plain comparison of plain
// trees.
#include <fuzzer/FuzzedDataProvider.h>

#include <map>
#include <vector>

#include "Common/Components/CComponentObject.h"
#include "Common/Nodes/ACNode.h"
#include "Fuzzing.h"
#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"

using namespace Harbor;

namespace {

struct Tree {
    WideString name;
    std::vector<std::pair<WideString, std::pair<std::uint16_t, std::int32_t>>> attributes;  // type and value
    std::vector<Tree> children;

    ACNode Build() const {
        ACNode node;
        node.Create(name.c_str(), nullptr);
        for (const auto& [attribute, value] : attributes) {
            REQUIRE(AcnSetAttribute(node.Handle(), attribute.c_str(), value.first, &value.second, 4) == S_OK);
        }
        for (const Tree& child : children) REQUIRE(AcnAppendChild(node.Handle(), child.Build().Handle()) == S_OK);
        return node;
    }
    const Tree* Find(const WideString& child) const {
        const auto found = std::ranges::find(children, child, &Tree::name);
        return found != children.end() ? &*found : nullptr;
    }
};

bool Same(const Tree& a, const Tree& b) {
    using Sorted = std::map<WideString, std::pair<std::uint16_t, std::int32_t>>;
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

class Trees {
public:
    explicit Trees(FuzzedDataProvider& input) : input_(input) {}

    Tree Make(int depth) {
        Tree tree{Name(), {}, {}};
        for (std::size_t i = Below(3); i > 0; --i) SetAttribute(tree);
        for (std::size_t i = depth > 0 ? Below(4) : 0; i > 0; --i) tree.children.push_back(Make(depth - 1));
        return tree;
    }
    // Makes one change somewhere in the tree.
    void Change(Tree& tree) {
        auto& [name, attributes, children] = tree;
        if (!children.empty() && Below(3) != 0) return Change(children[Below(children.size())]);
        switch (Below(7)) {
            case 0:
                name = Name();
                break;
            case 1:
                SetAttribute(tree);
                break;
            case 2:
                if (!attributes.empty()) attributes.pop_back();
                break;
            case 3:
                std::ranges::reverse(attributes);
                break;
            case 4:
                children.push_back(Make(1));
                break;
            case 5:
                if (!children.empty()) children.pop_back();
                break;
            case 6:
                if (!children.empty()) std::swap(children.front(), children[Below(children.size())]);
                break;
        }
    }

private:
    std::size_t Below(std::size_t limit) { return input_.ConsumeIntegralInRange<std::size_t>(0, limit - 1); }
    WideString Name() { return WideString(1, static_cast<char16_t>(u'a' + Below(8))); }
    void SetAttribute(Tree& tree) {
        const WideString name = Name();
        std::erase_if(tree.attributes, [&](const auto& attribute) { return attribute.first == name; });
        tree.attributes.push_back(
            {name, {Below(2) == 0 ? AcnTypeInt32 : AcnTypeUInt32, static_cast<std::int32_t>(Below(2))}});
    }

    FuzzedDataProvider& input_;
};

ACNode Configuration(const Tree& items) {
    return Tree{u"Root", {}, {{u"ScopeItems", {}, items.children}}}.Build();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    Trees trees(input);
    const Tree before = trees.Make(4);
    Tree after = before;
    for (int changes = input.ConsumeIntegralInRange(0, 3); changes > 0; --changes) trees.Change(after);
    {
        const auto strategy = Create<DataCollection::ScopeItemUpdateStrategy, DataCollection::ITriggerStrategy>();
        const ACNode oldConfig = Configuration(before), newConfig = Configuration(after);
        const HRESULT answer = strategy->OnConfigurationUpdate(oldConfig.Handle(), newConfig.Handle());
        REQUIRE(answer == (MustTrigger(before, after) ? S_OK : S_FALSE));
    }
    REQUIRE(Fuzzing::OpenNodeHandles() == 0);
    return 0;
}
