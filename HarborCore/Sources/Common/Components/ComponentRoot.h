// The first base of every component class. It holds the reference count, and its address is the identity of the object.
#pragma once

#include "Harbor/ReferenceCount.h"

namespace Harbor {

// A component class derives from ComponentRoot and then from its interfaces. It defines its name and the interfaces
// that can be queried:
//
//     static constexpr const char* Tag = "CComponentObject<class ...>::CComponentObject";
//     using Queryable = InterfaceList<IAction, IActionControl>;
//
// It may define FinalConstruct and FinalRelease, which are then called instead of those of this class.
class ComponentRoot : public IComponentUnknown {
public:
    virtual ~ComponentRoot() = default;

    ComponentRoot(const ComponentRoot&) = delete;
    ComponentRoot& operator=(const ComponentRoot&) = delete;

    // The second phase of construction. If it returns a failure, the object is destroyed and that code is returned.
    HRESULT FinalConstruct() noexcept { return S_OK; }
    // Called on the thread of the last Release, before the destructor.
    void FinalRelease() noexcept {}

protected:
    ComponentRoot() noexcept = default;

    ReferenceCount references_;
};

}  // namespace Harbor
