// Creates components whose interfaces have no id.
#pragma once

#include "Common/Components/CComponentObject.h"

namespace ConfigServer {

// Only their identity can be queried.
struct NoQueryableInterfaces {
    template <class T>
    static Harbor::IComponentUnknown* Find(T*, const Harbor::GUID&) noexcept {
        return nullptr;
    }
};

// Failures are thrown as HRX or std::bad_alloc.
template <class T>
[[nodiscard]] Harbor::ComponentPtr<Harbor::CComponentObject<T>> CreateComponent() {
    Harbor::CComponentObject<T>* created = nullptr;
    Harbor::ThrowIfFailed(Harbor::CComponentObject<T>::CreateObject(&created));
    return Harbor::ComponentPtr<Harbor::CComponentObject<T>>::Attach(created);
}

}  // namespace ConfigServer
