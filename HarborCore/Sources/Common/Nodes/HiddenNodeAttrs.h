// Which attributes' values must not reach a log, by the setting HiddenNodeTypeAttrs of the section Logger:
//
//     type:name,name;type:name
//
// The type "*" stands for every node type. Types and names compare exactly.
#pragma once

#include <map>
#include <set>

#include "Common/Nodes/ACNode.h"

namespace Harbor {

class HiddenNodeAttrs {
public:
    using Rules = std::map<WideString, std::set<WideString>>;  // attribute names by node type

    // Built at the first call; the setting is read once. A malformed setting is thrown as HRX with E_INVALIDARG, one
    // that can't be read just now with E_ABORT, and the next call tries again.
    static const HiddenNodeAttrs& Instance();

    // Throws HRX with E_INVALIDARG for a rule that isn't a type, a colon and names.
    [[nodiscard]] static Rules ParseRules(std::u16string_view setting);

    explicit HiddenNodeAttrs(Rules rules);

    // The node to print down to `depth`: the node itself, or a clone in which hidden values are replaced. Only a tree
    // that holds a hidden attribute is cloned. What the store doesn't tell is thrown as HRX. Any thread.
    [[nodiscard]] ACNode Mask(const ACNode& node, std::uint32_t depth) const;

private:
    template <class T>
    friend class SingletonHolder;
    HiddenNodeAttrs();

    // The names that a rule hides and the node has.
    std::vector<const WideChar*> HiddenAttributesOf(const ACNode& node) const;

    const Rules rules_;
};

}  // namespace Harbor
