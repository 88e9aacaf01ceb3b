// A counted reference to a component, one pointer wide.
#pragma once

#include <utility>

#include "Harbor/ComponentUnknown.h"

namespace Harbor {

template <class I>
class ComponentPtr {
public:
    constexpr ComponentPtr() noexcept = default;

    // Holds `pointer` and counts a reference of its own.
    explicit ComponentPtr(I* pointer) noexcept : pointer_(pointer) {
        if (pointer_ != nullptr) pointer_->AddRef();
    }
    // Takes over the reference that `pointer` carries.
    [[nodiscard]] static ComponentPtr Attach(I* pointer) noexcept {
        ComponentPtr attached;
        attached.pointer_ = pointer;
        return attached;
    }

    ComponentPtr(const ComponentPtr& other) noexcept : ComponentPtr(other.pointer_) {}
    ComponentPtr(ComponentPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComponentPtr& operator=(const ComponentPtr& other) noexcept {
        Assign(ComponentPtr(other));
        return *this;
    }
    ComponentPtr& operator=(ComponentPtr&& other) noexcept {
        Assign(std::move(other));
        return *this;
    }
    ~ComponentPtr() {
        if (pointer_ != nullptr) pointer_->Release();
    }

    // Becomes null, releases the old object, then holds `pointer` and counts a reference. While the old object ends,
    // this is null. `pointer` must not depend on the old object to stay alive. The same pointer changes nothing.
    void Reset(I* pointer = nullptr) noexcept {
        if (pointer == pointer_) return;
        if (I* old = std::exchange(pointer_, nullptr)) old->Release();
        // An object that ends may have stored another pointer here.
        if (I* stored = std::exchange(pointer_, pointer)) stored->Release();
        if (pointer_ != nullptr) pointer_->AddRef();
    }

    // The place where a call stores a counted pointer. What was held is released first.
    I** Address() noexcept {
        Reset();
        return &pointer_;
    }

    void Assign(ComponentPtr&& other) noexcept {
        if (this == &other) return;
        std::swap(pointer_, other.pointer_);
        other.Reset();
    }

    // Gives the reference to the caller and becomes null.
    [[nodiscard]] I* Detach() noexcept { return std::exchange(pointer_, nullptr); }

    // Queries the object for another interface. Returns E_POINTER if this is null, otherwise the code of
    // QueryInterface. `target` changes only on success.
    template <class Other>
    [[nodiscard]] HRESULT QueryTo(ComponentPtr<Other>& target, const GUID& iid = Other::Id) const {
        if (pointer_ == nullptr) return E_POINTER;
        void* found = nullptr;
        const HRESULT code = pointer_->QueryInterface(&iid, &found);
        if (Succeeded(code)) target.Assign(ComponentPtr<Other>::Attach(static_cast<Other*>(found)));
        return code;
    }

    I* Get() const noexcept { return pointer_; }
    I* operator->() const noexcept { return pointer_; }
    explicit operator bool() const noexcept { return pointer_ != nullptr; }

private:
    I* pointer_ = nullptr;
};

}  // namespace Harbor
