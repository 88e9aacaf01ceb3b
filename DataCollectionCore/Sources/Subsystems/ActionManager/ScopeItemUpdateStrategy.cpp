#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"

#include "Common/MethodEdge.h"
#include "Common/Nodes/NodeDump.h"
#include "Subsystems/ActionManager/NodeComparison.h"

namespace DataCollection {

using namespace Harbor;

namespace {

constexpr WideChar ScopeItemsName[] = u"ScopeItems";
constexpr std::uint32_t OwnName = 0;
constexpr HRESULT Trigger = S_OK;
constexpr HRESULT NoTrigger = S_FALSE;

// The first difference ends the walk, which goes over the new items alone.
HRESULT CompareItems(const ACNode& oldItems, const ACNode& newItems) {
    const std::uint64_t count = newItems.GetChildCount();
    for (std::uint64_t i = 0; i < count; ++i) {
        const ACNode item = newItems.GetChild(i, true);
        const ACNode oldItem = oldItems.GetChild(item.GetName(OwnName).c_str(), false);
        if (!oldItem) {
            LOG(Dbg, u"New ScopeItem added: " << item);
            return Trigger;
        }
        if (!NodesEqual(item, oldItem, NodeLevel::Top)) {
            LOG(Dbg, u"ScopeItem was changed");
            LOG(Dbg, u"OldValue: " << oldItem);
            LOG(Dbg, u"NewValue: " << item);
            return Trigger;
        }
    }
    LOG(Dbg, u"All current ScopeItems are in the same state");
    return NoTrigger;
}

}  // namespace

HRESULT ScopeItemUpdateStrategy::OnConfigurationUpdate(AcnHandle oldConfig, AcnHandle newConfig) {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ScopeItemUpdateStrategy::OnConfigurationUpdate"), [&] {
        const ACNode oldNode(oldConfig, false);
        const ACNode newNode(newConfig, false);
        if (!oldNode) return NoTrigger;
        const ACNode oldItems = oldNode.GetChild(ScopeItemsName, false);
        const ACNode newItems = newNode.GetChild(ScopeItemsName, false);
        if (!newItems) {
            LOG(Dbg, u"All items are deleted - no trigger");
            return NoTrigger;
        }
        if (!oldItems) {
            LOG(Dbg, u"There is no items in old version but there is items in new - trigger");
            return Trigger;
        }
        return CompareItems(oldItems, newItems);
    });
}

HRESULT ScopeItemUpdateStrategy::ReservedOperation(void* /*reserved*/) {
    return S_OK;
}

}  // namespace DataCollection
