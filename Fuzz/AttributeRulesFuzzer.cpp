// The rules of hidden attributes: rules that are written again are read back unchanged, and the attributes that they
// name are hidden in the dump, while the node does not change.
#include "Common/Base/HRes.h"
#include "Common/Nodes/HiddenNodeAttrs.h"
#include "Fuzzing.h"

using namespace Harbor;

namespace {

WideString Written(const HiddenNodeAttrs::Rules& rules) {
    WideString text;
    for (const auto& [type, names] : rules) {
        text += u" " + type + u":,";
        for (const WideString& name : names) text += u" " + name + u",";
        text += u';';
    }
    return text;
}

// A node of each rule's type with the attributes that the rule hides, and one attribute that no rule can name.
void CheckMask(const HiddenNodeAttrs::Rules& rules) {
    const HiddenNodeAttrs hidden(rules);
    for (const auto& [type, names] : rules) {
        ACNode node;
        node.Create(u"Node", type.c_str());
        node.SetText(u"a:b", u"shown", MeasureText);
        for (const WideString& name : names) {
            if (!name.empty() && name.front() != u'\0') node.SetText(name.c_str(), u"secret", MeasureText);
        }
        const ACNode masked = hidden.Mask(node, 0);
        REQUIRE(masked.GetText(u"a:b") == u"shown" && masked.GetAttributeNames() == node.GetAttributeNames());
        if (type.find(u'\0') != type.npos) continue;  // to the store the type ends there
        for (const WideString& name : names) {
            if (name.empty() || name.find(u'\0') != name.npos) continue;
            REQUIRE(node.GetText(name.c_str()) == u"secret" && masked.GetText(name.c_str()) == u"********");
        }
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    HiddenNodeAttrs::Rules rules;
    try {
        rules = HiddenNodeAttrs::ParseRules(FromUtf8(Fuzzing::AsBytes(data, size)));
    } catch (const HRX& refusal) {
        REQUIRE(refusal.Code() == E_INVALIDARG);
        return 0;
    }
    REQUIRE(HiddenNodeAttrs::ParseRules(Written(rules)) == rules);
    CheckMask(rules);
    REQUIRE(Fuzzing::OpenNodeHandles() == 0);
    return 0;
}
