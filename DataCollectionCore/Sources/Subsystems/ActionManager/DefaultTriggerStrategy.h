// A configuration change never triggers.
#pragma once

#include "Common/Components/CComponentObject.h"
#include "DataCollection/TriggerStrategy.h"

namespace DataCollection {

class DefaultTriggerStrategy : public Harbor::ComponentRoot, public ITriggerStrategy {
public:
    static constexpr const char* Tag =
        "CComponentObject<class DataCollection::DefaultTriggerStrategy>::CComponentObject";
    using Queryable = Harbor::InterfaceList<ITriggerStrategy>;

    HRESULT OnConfigurationUpdate(AcnHandle, AcnHandle) override { return Harbor::S_FALSE; }
    HRESULT ReservedOperation(void*) override { return Harbor::S_OK; }
};

}  // namespace DataCollection
