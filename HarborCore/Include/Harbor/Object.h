// The base class of a component object: it counts the references and answers QueryInterface. An object implements only
// the functions of its interfaces:
//
//     class Printer final : public Harbor::Object<DataCollection::ActionManagement::IActionListener> {
//     public:
//         Harbor::HRESULT OnActionTriggered(DataCollection::ActionManagement::IActionSubscription*,
//                                           DataCollection::IAction*) override {
//             std::puts("called");
//             return Harbor::S_OK;
//         }
//     };
//
//     const Harbor::ComponentPtr<Printer> printer = Harbor::MakeObject<Printer>();
#pragma once

#include <utility>

#include "Harbor/ComponentPtr.h"
#include "Harbor/ReferenceCount.h"

namespace Harbor {

// The address of the first interface is the identity of the object. An interface that has no id of its own, such as
// IActionListener, cannot be queried.
template <class First, class... Others>
class Object : public First, public Others... {
public:
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    std::uint32_t AddRef() final { return references_.Add(); }

    // The last Release calls FinalRelease and deletes the object, on the calling thread.
    std::uint32_t Release() final {
        const std::uint32_t left = references_.Remove();
        if (left == 0) {
            FinalRelease();
            delete this;
        }
        return left;
    }

    HRESULT QueryInterface(const GUID* iid, void** result) final {
        if (iid == nullptr || result == nullptr) return E_INVALIDARG;
        IComponentUnknown* found = static_cast<First*>(this);
        if (*iid != IComponentUnknown::Id) found = InterfaceList<First, Others...>::Find(this, *iid);
        if (found == nullptr) return E_NOINTERFACE;
        AddRef();
        *result = found;
        return S_OK;
    }

protected:
    Object() noexcept = default;
    virtual ~Object() = default;

    // Called by the last Release, while the object is still complete.
    virtual void FinalRelease() noexcept {}

private:
    ReferenceCount references_;
};

// Creates a T, which derives from Object, and returns its one reference. Throws what the constructor throws, or
// std::bad_alloc.
//
// An object that is a local variable or a member instead keeps the reference of its creator and is never deleted by
// Release. Its owner must then wait until no other holder is left.
template <class T, class... Arguments>
[[nodiscard]] ComponentPtr<T> MakeObject(Arguments&&... arguments) {
    return ComponentPtr<T>::Attach(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace Harbor
