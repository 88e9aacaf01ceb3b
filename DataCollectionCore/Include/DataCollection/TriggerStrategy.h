// Determines whether a change between two configuration trees requires a run.
#pragma once

#include "Harbor/ComponentUnknown.h"
#include "NodeFabric/NodeFabric.h"

namespace DataCollection {

using Harbor::GUID;
using Harbor::HRESULT;

// Compares the children of the node "ScopeItems" (the items) of the two trees. The change requires a run if an item of
// the new tree is missing in the old one or differs from the old item of the same name, or if only the new tree has the
// node "ScopeItems". Two items are equal if their names, attributes (in any order) and children (in the same order) are
// equal. Items that were removed, the order of the items, and nodes outside "ScopeItems" do not require a run; neither
// does any change from a null tree.
inline constexpr GUID ScopeItemUpdateStrategyClassId{
    0xF69D31FB, 0x90B0, 0x46CD, {0x9C, 0x48, 0x20, 0xD9, 0x5C, 0xF8, 0x21, 0xC4}};
// Always returns S_FALSE.
inline constexpr GUID DefaultTriggerStrategyClassId{
    0xAB457E1C, 0xF8B0, 0x4982, {0x8D, 0xFA, 0x29, 0x5B, 0x4C, 0x55, 0x01, 0x45}};

// Any thread may call these functions at any time. The object has no state.
struct ITriggerStrategy : Harbor::IComponentUnknown {
    static constexpr GUID Id{0x2A4534DD, 0x1230, 0x469A, {0x9F, 0xE4, 0x83, 0x28, 0xCC, 0x88, 0x86, 0x56}};

    // Returns S_OK if the change requires a run and S_FALSE if it does not; both are successes, so compare with S_OK
    // instead of calling Succeeded. If a call to the node store fails, returns
    // its code. The handles are borrowed and may be null.
    virtual HRESULT OnConfigurationUpdate(AcnHandle oldConfig, AcnHandle newConfig) = 0;
    // Returns S_OK and does nothing.
    virtual HRESULT ReservedOperation(void* reserved) = 0;

protected:
    ~ITriggerStrategy() = default;
};

}  // namespace DataCollection
