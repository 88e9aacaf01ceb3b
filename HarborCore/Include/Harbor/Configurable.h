// A component that is configured by a node. The header of each class says which attributes the node must have, and
// whether Configure may be called again.
#pragma once

#include "Harbor/ComponentUnknown.h"
#include "NodeFabric/NodeFabric.h"

namespace Harbor {

struct IConfigurable : IComponentUnknown {
    static constexpr GUID Id{0x9FD0681A, 0xA35D, 0x48EF, {0xA2, 0x26, 0xDE, 0x38, 0x46, 0xE1, 0x9D, 0x38}};

    // Configures the component. `config` is borrowed: the component duplicates the handles that it keeps.
    virtual HRESULT Configure(AcnHandle config) = 0;

protected:
    ~IConfigurable() = default;
};

}  // namespace Harbor
