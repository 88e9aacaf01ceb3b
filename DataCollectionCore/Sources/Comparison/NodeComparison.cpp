#include "Comparison/NodeComparison.h"

#include "Common/Base/Text.h"

namespace DataCollection {

using namespace Harbor;

namespace {

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
            inA.Read(a, name.data());  // a 0 follows each name
            inB.Read(b, name.data());
            equal = inA == inB;
        }
        ++count;
    }
    return equal && count == Split(b.GetAttributeNames(), NameEnd).size();
}

bool NamesEqual(const ACNode& a, const ACNode& b, NodeLevel level) {
    return level == NodeLevel::Top ? a.GetFullPath() == b.GetFullPath()
                                   : a.GetName(AcnOwnName) == b.GetName(AcnOwnName);
}

// Two equal nodes whose children are being compared.
struct Level {
    ACNode a;
    ACNode b;
    std::uint64_t childCount;
    std::uint64_t nextChild = 0;
};

}  // namespace

// Depth first, with the way down kept in a list: how deep a tree is must not be limited by the thread's stack.
bool NodesEqual(const ACNode& topA, const ACNode& topB, NodeLevel level) {
    std::vector<Level> way;
    const auto enter = [&](ACNode a, ACNode b) {
        if (!NamesEqual(a, b, way.empty() ? level : NodeLevel::Deeper) || !AttributesEqual(a, b)) return false;
        const std::uint64_t count = a.GetChildCount();
        if (count != b.GetChildCount()) return false;
        way.push_back({std::move(a), std::move(b), count});
        return true;
    };
    if (!enter(topA, topB)) return false;
    while (!way.empty()) {
        Level& current = way.back();
        if (current.nextChild == current.childCount) {
            way.pop_back();
            continue;
        }
        const std::uint64_t i = current.nextChild++;
        ACNode childA = current.a.GetChild(i);
        ACNode childB = current.b.FindChild(childA.GetName(AcnOwnName).c_str());
        if (!childB) return false;
        const bool sameOrder = current.b.GetChild(i).Handle() == childB.Handle();
        if (!sameOrder || !enter(std::move(childA), std::move(childB))) return false;
    }
    return true;
}

}  // namespace DataCollection
