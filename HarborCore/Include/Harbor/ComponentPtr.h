// A counted reference to a component, one pointer wide.
#pragma once

#include <utility>

#include "Harbor/ComponentUnknown.h"

namespace Harbor {

// Throws the failed code as HRX, with the words that the callee left in the thread's error object.
[[noreturn]] void ThrowFailedCall(HRESULT code);

template <class I>
class ComponentPtr {
public:
    constexpr ComponentPtr() noexcept = default;

    // With `attach` the reference that `pointer` carries is taken over, otherwise one more is counted.
    ComponentPtr(I* pointer, bool attach) noexcept : pointer_(pointer) {
        if (pointer_ != nullptr && !attach) pointer_->AddRef();
    }

    ComponentPtr(const ComponentPtr& other) noexcept : ComponentPtr(other.pointer_, false) {}
    ComponentPtr(ComponentPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComponentPtr& operator=(const ComponentPtr& other) noexcept {
        if (this != &other) Reset(other.pointer_);
        return *this;
    }
    ComponentPtr& operator=(ComponentPtr&& other) noexcept {
        Assign(std::move(other));
        return *this;
    }
    ~ComponentPtr() {
        if (pointer_ != nullptr) pointer_->Release();
    }

    // Lets the old reference go, then holds `pointer` and counts it. The same pointer again changes nothing.
    void Reset(I* pointer = nullptr) noexcept {
        if (pointer == pointer_) return;
        if (I* old = std::exchange(pointer_, pointer)) old->Release();
        if (pointer_ != nullptr) pointer_->AddRef();
    }

    // The place for a call to store a counted pointer in; what was held is let go first.
    I** Address() noexcept {
        Reset();
        return &pointer_;
    }

    void Assign(ComponentPtr&& other) noexcept {
        if (this == &other) return;
        std::swap(pointer_, other.pointer_);
        other.Reset();
    }

    // Gives the reference to the caller and leaves this empty.
    [[nodiscard]] I* Detach() noexcept { return std::exchange(pointer_, nullptr); }

    // E_POINTER if this is empty, else the code of QueryInterface; `target` changes on success alone.
    template <class Other>
    [[nodiscard]] HRESULT QueryTo(ComponentPtr<Other>& target, const GUID& iid = Other::Id) const {
        if (pointer_ == nullptr) return E_POINTER;
        void* found = nullptr;
        const HRESULT code = pointer_->QueryInterface(&iid, &found);
        if (Succeeded(code)) target.Assign(ComponentPtr<Other>(static_cast<Other*>(found), true));
        return code;
    }

    // As QueryTo; a failure is thrown as HRX.
    template <class Other>
    [[nodiscard]] ComponentPtr<Other> QueryOrThrow(const GUID& iid = Other::Id) const {
        ComponentPtr<Other> target;
        if (const HRESULT code = QueryTo(target, iid); Failed(code)) ThrowFailedCall(code);
        return target;
    }

    I* Get() const noexcept { return pointer_; }
    I* operator->() const noexcept { return pointer_; }
    explicit operator bool() const noexcept { return pointer_ != nullptr; }

private:
    I* pointer_ = nullptr;
};

}  // namespace Harbor
