#include "Common/Nodes/HiddenNodeAttrs.h"

#include "Common/HRes.h"
#include "Common/Settings/SettingsStore.h"
#include "Common/SingletonHolder.h"
#include "Common/Text.h"

namespace Harbor {
namespace {

constexpr WideChar Section[] = u"Logger";
constexpr WideChar SettingKey[] = u"HiddenNodeTypeAttrs";
constexpr WideChar MaskText[] = u"********";
constexpr WideChar EveryType[] = u"*";
constexpr std::u16string_view Blanks = u" \r\n\t";

constinit SingletonHolder<HiddenNodeAttrs> Holder;

// Visits a tree, `before` from the root down and `after` from the leaves up. `before` says whether the children are
// visited, `after` whether the walk goes on behind the node.
template <class Before, class After>
bool Traverse(const ACNode& node, const Before& before, const After& after) {
    if (before(node)) {
        const std::uint64_t count = node.GetChildCount();
        for (std::uint64_t i = 0; i < count; ++i) {
            if (!Traverse(node.GetChild(i, true), before, after)) break;
        }
    }
    return after(node);
}

}  // namespace

// One masking of one tree.
class HiddenNodeAttrs::Walk {
public:
    Walk(const Rules& rules, const ACNode& root, std::uint32_t depth) : rules_(rules), root_(root), depth_(depth) {}

    ACNode Run() {
        Traverse(
            root_, [this](const ACNode& node) { return Before(node); },
            [this](const ACNode&) {
                --level_;
                return true;
            });
        return clone_ ? clone_ : root_;
    }

private:
    bool Before(const ACNode& node) {
        ApplyRule(node, node.GetType());
        ApplyRule(node, EveryType);
        return level_++ < depth_;
    }

    void ApplyRule(const ACNode& node, const WideString& type) {
        const auto rule = rules_.find(type);
        if (rule == rules_.end()) return;
        ACNode target;
        for (const WideString& name : rule->second) {
            if (!node.HasAttribute(name.c_str())) continue;
            if (!target) target = TargetOf(node);
            target.SetText(name.c_str(), MaskText, MeasureText);
        }
    }

    ACNode TargetOf(const ACNode& node) {
        if (!clone_) clone_ = root_.Clone(depth_, 0);
        return clone_.FindByPath(node.GetFullPath(), NotAboveThisNode);
    }

    const Rules& rules_;
    const ACNode& root_;
    const std::uint32_t depth_;
    ACNode clone_;
    std::uint32_t level_ = 0;
};

const HiddenNodeAttrs& HiddenNodeAttrs::Instance() {
    return Holder.Get();
}

HiddenNodeAttrs::HiddenNodeAttrs() : HiddenNodeAttrs(ParseRules(GetSettingOr(Section, SettingKey, u""))) {}

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

ACNode HiddenNodeAttrs::Mask(const ACNode& node, std::uint32_t depth) const {
    return rules_.empty() ? node : Walk(rules_, node, depth).Run();
}

}  // namespace Harbor
