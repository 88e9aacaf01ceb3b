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

}  // namespace

// One masking of one tree. The node of the clone that stands for a visited one is found by its position: siblings may
// share a name, and a path would then lead to the first of them and leave the secret of the others in sight.
class HiddenNodeAttrs::Walk {
public:
    Walk(const Rules& rules, const ACNode& root, std::uint32_t depth) : rules_(rules), root_(root), depth_(depth) {}

    ACNode Run() {
        Visit(root_);
        return clone_ ? clone_ : root_;
    }

private:
    void Visit(const ACNode& node) {
        ApplyRule(node, node.GetType());
        ApplyRule(node, EveryType);
        if (position_.size() >= depth_) return;
        const std::uint64_t count = node.GetChildCount();
        for (std::uint64_t i = 0; i < count; ++i) {
            position_.push_back(i);
            Visit(node.GetChild(i, true));
            position_.pop_back();
        }
    }

    void ApplyRule(const ACNode& node, const WideString& type) {
        const auto rule = rules_.find(type);
        if (rule == rules_.end()) return;
        ACNode target;
        for (const WideString& name : rule->second) {
            if (!node.HasAttribute(name.c_str())) continue;
            if (!target) target = FindInClone();
            target.SetText(name.c_str(), MaskText, MeasureText);
        }
    }

    // Only a tree that really holds a hidden attribute pays for a clone.
    ACNode FindInClone() {
        if (!clone_) clone_ = root_.Clone(depth_, 0);
        ACNode found = clone_;
        for (const std::uint64_t index : position_) found = found.GetChild(index, true);
        return found;
    }

    const Rules& rules_;
    const ACNode& root_;
    const std::uint32_t depth_;
    ACNode clone_;
    std::vector<std::uint64_t> position_;  // of the visited node: the index at each level below the root
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
