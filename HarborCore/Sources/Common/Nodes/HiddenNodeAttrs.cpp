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

// Returns the setting, or an empty text if it does not exist. Throws HRX if the setting cannot be read now, since an
// existing rule must not be ignored.
WideString ReadSettingOrThrow() {
    WideString setting;
    if (const HRESULT code = GetSetting(Section, SettingKey, setting); code != NOT_FOUND) ThrowIfFailed(code);
    return setting;
}

// Calls `visit` for the node and for the nodes of `depth` levels below it, parents first, until it returns false.
// Returns the last result of `visit`. The path to the current node is kept on the heap, so that the thread's stack does
// not limit the depth of a tree.
template <class Visit>
bool VisitTree(ACNode root, std::uint32_t depth, Visit visit) {
    struct Level {
        ACNode node;
        std::uint64_t childCount;
        std::uint64_t nextChild = 0;
    };
    std::vector<Level> path;
    const auto enter = [&](ACNode node) {
        if (!visit(node)) return false;
        const std::uint64_t childCount = path.size() < depth ? node.GetChildCount() : 0;
        path.push_back({std::move(node), childCount});
        return true;
    };
    bool proceed = enter(std::move(root));
    while (proceed && !path.empty()) {
        Level& current = path.back();
        if (current.nextChild < current.childCount) {
            proceed = enter(current.node.GetChild(current.nextChild++));
        } else {
            path.pop_back();
        }
    }
    return proceed;
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

    // The clone is walked separately. No other thread changes it, while a node of the original may be moved between two
    // reads; and siblings that share a name have the same path, so a node of the original cannot be looked up in the
    // clone.
    ACNode clone = node.Clone(depth, 0);
    VisitTree(clone, depth, [this](ACNode& visited) {
        for (const WideChar* const name : HiddenAttributesOf(visited)) visited.SetText(name, MaskText, MeasureText);
        return true;
    });
    return clone;
}

}  // namespace Harbor
