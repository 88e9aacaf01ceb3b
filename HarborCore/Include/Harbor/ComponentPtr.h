// A counted reference to a component. It has the size of one pointer. A ComponentPtr has no lock: each thread uses its
// own, or a lock guards it. No operation throws.
#pragma once

#include <utility>

#include "Harbor/ComponentUnknown.h"

namespace Harbor {

template <class I>
class ComponentPtr {
public:
    constexpr ComponentPtr() noexcept = default;

    // Holds `pointer` and counts a new reference to it.
    explicit ComponentPtr(I* pointer) noexcept : pointer_(pointer) {
        if (pointer_ != nullptr) pointer_->AddRef();
    }
    // Returns a ComponentPtr that takes over the caller's reference to `pointer`. It counts no new one.
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

    // Sets this to null, releases the old object, then stores `pointer` and counts a reference to it. Therefore the
    // destructor of the old object sees null here, and the object at `pointer` must stay alive without the old object.
    // Does nothing if this already holds `pointer`.
    void Reset(I* pointer = nullptr) noexcept {
        if (pointer == pointer_) return;
        if (I* old = std::exchange(pointer_, nullptr)) old->Release();
        // The destructor of the old object may have stored another pointer here.
        if (I* stored = std::exchange(pointer_, pointer)) stored->Release();
        if (pointer_ != nullptr) pointer_->AddRef();
    }

    // Releases the object, sets this to null, and returns the address of the pointer. A call may store a pointer there;
    // this then owns the reference that comes with it.
    I** Address() noexcept {
        Reset();
        return &pointer_;
    }

    // Moves the pointer of `other` here, then releases the old object.
    void Assign(ComponentPtr&& other) noexcept {
        if (this == &other) return;
        std::swap(pointer_, other.pointer_);
        other.Reset();
    }

    // Returns the pointer with its reference, which the caller must release, and sets this to null.
    [[nodiscard]] I* Detach() noexcept { return std::exchange(pointer_, nullptr); }

    // Queries the object for another interface and stores it in `target`. Returns E_POINTER if this is null, otherwise
    // the code of QueryInterface. A failure leaves `target` unchanged.
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
