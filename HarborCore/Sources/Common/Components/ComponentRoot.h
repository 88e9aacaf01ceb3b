// The first base of every component class: its identity and its reference count.
#pragma once

#include <array>
#include <atomic>

#include "Harbor/ComponentUnknown.h"

namespace Harbor {

// A component class derives from ComponentRoot and then from its interfaces. It names itself and what can be queried:
//
//     static constexpr const char* Tag = "CComponentObject<class ...>::CComponentObject";
//     using Queryable = InterfaceList<IAction, IActionControl>;
//
// and may have a FinalConstruct and a FinalRelease of its own, which take the place of those here.
class ComponentRoot : public IComponentUnknown {
public:
    virtual ~ComponentRoot() = default;

    ComponentRoot(const ComponentRoot&) = delete;
    ComponentRoot& operator=(const ComponentRoot&) = delete;

    // The second phase of construction. A failure ends the object, and creation gives that code.
    HRESULT FinalConstruct() noexcept { return S_OK; }
    // Runs on the thread of the last Release, while the object is still whole.
    void FinalRelease() noexcept {}

protected:
    ComponentRoot() noexcept = default;

    std::atomic<std::uint32_t> referenceCount_{1};
};

template <class... Interfaces>
struct InterfaceList {
    // The view of `object` for an id, its interfaces asked in the order of the list; null if there is none.
    template <class T>
    static IComponentUnknown* Find(T* object, const GUID& iid) noexcept {
        IComponentUnknown* found = nullptr;
        (void)((iid == Interfaces::Id && (found = static_cast<Interfaces*>(object), true)) || ...);
        return found;
    }
};

}  // namespace Harbor
