#include "Subsystems/ActionManager/NodeComparison.h"

#include "Common/Text.h"

namespace DataCollection {

using namespace Harbor;

namespace {

constexpr std::uint32_t OwnName = 0;
constexpr std::u16string_view NameEnd{u"\0", 1};

struct RawAttribute {
    bool present = false;
    std::uint16_t type = 0;
    std::vector<std::uint8_t> bytes;

    void Read(const ACNode& node, const WideChar* name) { present = node.ReadRawAttribute(name, bytes, type); }

    bool operator==(const RawAttribute& other) const {
        if (!present || !other.present) return present == other.present;
        return type == other.type && bytes == other.bytes;
    }
};

bool AttributesEqual(const ACNode& a, const ACNode& b) {
    const WideString namesOfA = a.GetAttributeNames();
    std::size_t count = 0;
    bool equal = true;
    RawAttribute inA;
    RawAttribute inB;
    for (const std::u16string_view name : Split(namesOfA, NameEnd)) {
        if (equal) {
            inA.Read(a, name.data());  // a 0 stands behind each name
            inB.Read(b, name.data());
            equal = inA == inB;
        }
        ++count;
    }
    return equal && count == Split(b.GetAttributeNames(), NameEnd).size();
}

bool ChildrenEqual(const ACNode& a, const ACNode& b) {
    const std::uint64_t count = a.GetChildCount();
    if (count != b.GetChildCount()) return false;
    for (std::uint64_t i = 0; i < count; ++i) {
        const ACNode childA = a.GetChild(i, true);
        const ACNode childB = b.GetChild(childA.GetName(OwnName).c_str(), false);
        if (!childB) return false;
        const bool sameOrder = b.GetChild(i, true).Handle() == childB.Handle();
        if (!sameOrder || !NodesEqual(childA, childB, NodeLevel::Deeper)) return false;
    }
    return true;
}

bool NamesEqual(const ACNode& a, const ACNode& b, NodeLevel level) {
    return level == NodeLevel::Top ? a.GetFullPath() == b.GetFullPath() : a.GetName(OwnName) == b.GetName(OwnName);
}

}  // namespace

bool NodesEqual(const ACNode& a, const ACNode& b, NodeLevel level) {
    return NamesEqual(a, b, level) && AttributesEqual(a, b) && ChildrenEqual(a, b);
}

}  // namespace DataCollection
