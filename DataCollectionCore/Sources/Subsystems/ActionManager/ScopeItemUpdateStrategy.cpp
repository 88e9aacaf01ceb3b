#include "Subsystems/ActionManager/ScopeItemUpdateStrategy.h"

#include "Common/Failures/MethodEdge.h"
#include "Common/Nodes/NodeDump.h"
#include "Comparison/ScopeItems.h"

namespace DataCollection {

using namespace Harbor;

namespace {

constexpr HRESULT Trigger = S_OK;
constexpr HRESULT NoTrigger = S_FALSE;

}  // namespace

HRESULT ScopeItemUpdateStrategy::OnConfigurationUpdate(AcnHandle oldConfig, AcnHandle newConfig) {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ScopeItemUpdateStrategy::OnConfigurationUpdate"), [&] {
        const ACNode oldTree = ACNode::Borrow(oldConfig);
        const ACNode newTree = ACNode::Borrow(newConfig);
        if (!oldTree) return NoTrigger;
        const ScopeItemComparison comparison = CompareScopeItems(oldTree, newTree);
        switch (comparison.difference) {
            case ScopeItemDifference::NewHasNone:
                LOG(Dbg, u"All items are deleted - no trigger");
                return NoTrigger;
            case ScopeItemDifference::OnlyNewHas:
                LOG(Dbg, u"There is no items in old version but there is items in new - trigger");
                return Trigger;
            case ScopeItemDifference::ItemAdded:
                LOG(Dbg, u"New ScopeItem added: " << comparison.newItem);
                return Trigger;
            case ScopeItemDifference::ItemChanged:
                LOG(Dbg, u"ScopeItem was changed");
                LOG(Dbg, u"OldValue: " << comparison.oldItem);
                LOG(Dbg, u"NewValue: " << comparison.newItem);
                return Trigger;
            case ScopeItemDifference::None:
                break;
        }
        LOG(Dbg, u"All current ScopeItems are in the same state");
        return NoTrigger;
    });
}

HRESULT ScopeItemUpdateStrategy::ReservedOperation(void* /*reserved*/) {
    return S_OK;
}

}  // namespace DataCollection
