#include "Common/Nodes/HiddenNodeAttrs.h"

#include "Common/Base/HRes.h"
#include "Common/Base/SingletonHolder.h"
#include "Common/Base/Text.h"
#include "Common/Settings/SettingsStore.h"

namespace Harbor {
namespace {

constexpr WideChar Section[] = u"Logger";
constexpr WideChar SettingKey[] = u"HiddenNodeTypeAttrs";
constexpr WideChar MaskText[] = u"********";
constexpr WideChar EveryType[] = u"*";
constexpr std::u16string_view Blanks = u" \r\n\t";

constinit SingletonHolder<HiddenNodeAttrs> Holder;

// Only a setting that surely isn't there means that there are no rules.
WideString ReadSettingOrThrow() {
    WideString setting;
    if (const HRESULT code = GetSetting(Section, SettingKey, setting); code != NOT_FOUND) ThrowIfFailed(code);
    return setting;
}

// Shows `visit` the node and what is below it down to `depth` levels, parents first, for as long as it answers true;
// gives its last answer. The way down is kept in a list: how deep a tree is must not be limited by the thread's stack.
template <class Visit>
bool VisitTree(ACNode root, std::uint32_t depth, Visit visit) {
    struct Level {
        ACNode node;
        std::uint64_t childCount;
        std::uint64_t nextChild = 0;
    };
    std::vector<Level> way;
    const auto enter = [&](ACNode node) {
        if (!visit(node)) return false;
        const std::uint64_t childCount = way.size() < depth ? node.GetChildCount() : 0;
        way.push_back({std::move(node), childCount});
        return true;
    };
    bool goOn = enter(std::move(root));
    while (goOn && !way.empty()) {
        Level& current = way.back();
        if (current.nextChild < current.childCount) {
            goOn = enter(current.node.GetChild(current.nextChild++));
        } else {
            way.pop_back();
        }
    }
    return goOn;
}

}  // namespace

const HiddenNodeAttrs& HiddenNodeAttrs::Instance() {
    return Holder.Get();
}

HiddenNodeAttrs::HiddenNodeAttrs() : HiddenNodeAttrs(ParseRules(ReadSettingOrThrow())) {}

HiddenNodeAttrs::HiddenNodeAttrs(Rules rules) : rules_(std::move(rules)) {}

HiddenNodeAttrs::Rules HiddenNodeAttrs::ParseRules(std::u16string_view setting) {
    Rules rules;
    for (const std::u16string_view rule : Split(setting, u";")) {
        const auto parts = Split(rule, u":");
        if (parts.size() != 2) ThrowError(E_INVALIDARG);
        auto& names = rules[WideString(Trim(parts[0], Blanks))];
        for (const std::u16string_view name : Split(parts[1], u",")) names.emplace(Trim(name, Blanks));
    }
    return rules;
}

std::vector<const WideChar*> HiddenNodeAttrs::HiddenAttributesOf(const ACNode& node) const {
    std::vector<const WideChar*> hidden;
    for (const WideString& type : {node.GetTypeOrThrow(), WideString(EveryType)}) {
        const auto rule = rules_.find(type);
        if (rule == rules_.end()) continue;
        for (const WideString& name : rule->second) {
            if (node.HasAttribute(name.c_str())) hidden.push_back(name.c_str());
        }
    }
    return hidden;
}

ACNode HiddenNodeAttrs::Mask(const ACNode& node, std::uint32_t depth) const {
    const auto showsAll = [this](const ACNode& visited) { return HiddenAttributesOf(visited).empty(); };
    if (rules_.empty() || VisitTree(node, depth, showsAll)) return node;

    // A walk of its own over the clone: nobody else changes it, while in the original a node may move between two
    // looks, and siblings that share a name couldn't be told apart by their paths.
    ACNode clone = node.Clone(depth, 0);
    VisitTree(clone, depth, [this](ACNode& visited) {
        for (const WideChar* const name : HiddenAttributesOf(visited)) visited.SetText(name, MaskText, MeasureText);
        return true;
    });
    return clone;
}

}  // namespace Harbor
