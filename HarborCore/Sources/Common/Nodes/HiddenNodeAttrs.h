// The attributes whose values must not be logged. The setting HiddenNodeTypeAttrs of the section Logger names them:
//
//     type:name,name;type:name
//
// The type "*" means every node type. The case of types and names matters.
#pragma once

#include <map>
#include <set>

#include "Common/Nodes/ACNode.h"

namespace Harbor {

class HiddenNodeAttrs {
public:
    using Rules = std::map<WideString, std::set<WideString>>;  // attribute names by node type

    // Returns the object. The first call creates it and reads the setting; later changes apply at the next load. Throws
    // HRX with E_INVALIDARG for a malformed setting and with E_ABORT for one that cannot be read now; the next call
    // then tries again.
    static const HiddenNodeAttrs& Instance();

    // Throws HRX with E_INVALIDARG for a rule that is not a type, a colon and names.
    [[nodiscard]] static Rules ParseRules(std::u16string_view setting);

    explicit HiddenNodeAttrs(Rules rules);

    // Returns the node to print with `depth` levels below it: the node itself, or a clone in which hidden values are
    // masked if the tree has a hidden attribute. Failures of the store are thrown as HRX. Any thread may call it.
    [[nodiscard]] ACNode Mask(const ACNode& node, std::uint32_t depth) const;

private:
    template <class T>
    friend class SingletonHolder;
    HiddenNodeAttrs();

    // Returns the names of the attributes of the node that the rules hide.
    std::vector<const WideChar*> HiddenAttributesOf(const ACNode& node) const;

    const Rules rules_;
};

}  // namespace Harbor
