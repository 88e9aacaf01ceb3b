// The configuration service, as the module calls it and is called by it.
#pragma once

#include "Harbor/ComponentUnknown.h"
#include "NodeFabric/NodeFabric.h"

namespace Harbor {

// The name under which the broker has the service.
inline constexpr WideChar ConfigServiceInstanceName[] = u"ConfigServer.Proxy";

// The walk over the notification nodes of one report.
struct IACNodeEnumerator : IComponentUnknown {
    virtual HRESULT Reset() = 0;
    // Stores a handle, which the caller closes, and gives 0; anything else means that none is left.
    virtual HRESULT Next(AcnHandle* node) = 0;
};

struct IACNodeModifyEnum : IComponentUnknown {
    virtual HRESULT GetNodeEnumerator(IACNodeEnumerator** out) = 0;
};

// A watch.
struct IACModifySubscription : IComponentUnknown {
    // Changes are reported from now on.
    virtual HRESULT Start() = 0;
};

// Implemented by the client of a watch.
struct IACModifyCallback : IComponentUnknown {
    // May come on any thread of the service, with the pointer that AddSubscription gave.
    virtual HRESULT OnTriggered(IACModifySubscription* subscription, int kind, IACNodeModifyEnum* modifications) = 0;
};

struct IACConfigService : IComponentUnknown {
    static constexpr GUID Id{0xB3BE9604, 0x1352, 0x4DAB, {0xB4, 0x13, 0xD3, 0x77, 0x64, 0xC0, 0xCE, 0x97}};

    // Both nodes stay the caller's. The callback isn't counted. The result carries a reference, and nothing is
    // reported before its Start.
    virtual HRESULT AddSubscription(AcnHandle filter, AcnHandle parameters, IACModifyCallback* callback,
                                    IACModifySubscription** subscription) = 0;
    // After this has returned no report runs or comes.
    virtual HRESULT RemoveSubscription(IACModifySubscription* subscription) = 0;
};

}  // namespace Harbor
