// Triggers when an item of the child "ScopeItems" was added or changed. Removed items, and another order among the
// items, are no reason.
#pragma once

#include "Common/Components/CComponentObject.h"
#include "DataCollection/TriggerStrategy.h"

namespace DataCollection {

class ScopeItemUpdateStrategy : public Harbor::ComponentRoot, public ITriggerStrategy {
public:
    static constexpr const char* Tag =
        "CComponentObject<class DataCollection::ScopeItemUpdateStrategy>::CComponentObject";
    using Queryable = Harbor::InterfaceList<ITriggerStrategy>;

    HRESULT OnConfigurationUpdate(AcnHandle oldConfig, AcnHandle newConfig) override;
    HRESULT ReservedOperation(void* reserved) override;
};

}  // namespace DataCollection
