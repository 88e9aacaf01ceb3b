// The final class of every component object. It counts references, answers QueryInterface, creates objects and keeps
// the module in use while an object is alive.
#pragma once

#include <memory>

#include "Common/Base/HRes.h"
#include "Common/Components/ComponentRoot.h"
#include "Common/Components/ComponentsModule.h"
#include "Common/Components/DbgAliveObjectsTracker.h"

namespace Harbor {

template <class T>
class CComponentObject final : public T {
public:
    std::uint32_t AddRef() override { return this->referenceCount_.fetch_add(1, std::memory_order_relaxed) + 1; }

    std::uint32_t Release() override {
        // The last reference leaves the count far from 0: a partner that counts and releases the object while it ends,
        // on any thread, does not end it again. The owner of the only reference needs no exchange for that: what a
        // partner counts without a reference of its own may be lost.
        std::uint32_t count = this->referenceCount_.load(std::memory_order_acquire);
        if (count == 1) {
            this->referenceCount_.store(Ending, std::memory_order_relaxed);
        } else {
            while (!this->referenceCount_.compare_exchange_weak(count, count == 1 ? Ending : count - 1,
                                                                std::memory_order_acq_rel, std::memory_order_relaxed)) {
            }
        }
        if (count == 1) {
            this->FinalRelease();
            delete this;
        }
        return count - 1;
    }

    HRESULT QueryInterface(const GUID* iid, void** result) override {
        const HRESULT code = FindInterface(iid, result);
        if (Succeeded(code)) AddRef();
        return code;
    }

    // Creates an object and stores it with one reference. Returns the code of FinalConstruct; a failure destroys the
    // object. If memory runs out, std::bad_alloc is thrown.
    static HRESULT CreateObject(CComponentObject** out) {
        std::unique_ptr<CComponentObject> object(new CComponentObject);
        const HRESULT code = object->FinalConstruct();
        if (Succeeded(code)) *out = object.release();
        return code;
    }

    // The factory of the class table. Stores an interface with the one reference of the new object.
    static HRESULT CreateInstance(const GUID* iid, void** result) {
        CComponentObject* object = nullptr;
        if (const HRESULT code = CreateObject(&object); Failed(code)) return code;
        const HRESULT code = object->FindInterface(iid, result);
        if (Failed(code)) object->Release();
        return code;
    }

private:
    static constexpr std::uint32_t Ending = 0x80000000;  // far from 0 in both directions

    CComponentObject() {
        DbgAliveObjectsTracker::Track(this, T::Tag);
        ComponentsModule::CountObject();
    }

    ~CComponentObject() override {
        DbgAliveObjectsTracker::Untrack(this);
        ComponentsModule::DiscountObject();
    }

    friend std::default_delete<CComponentObject>;

    // QueryInterface without counting a reference.
    HRESULT FindInterface(const GUID* iid, void** result) noexcept {
        if (iid == nullptr || result == nullptr) return E_INVALIDARG;
        void* found = nullptr;
        if (*iid == IComponentUnknown::Id) {
            found = static_cast<ComponentRoot*>(this);
        } else {
            found = T::Queryable::Find(static_cast<T*>(this), *iid);
        }
        if (found == nullptr) return E_NOINTERFACE;
        *result = found;
        return S_OK;
    }
};

// Creates a T and returns its interface I. For the module's own code. Failures are thrown as HRX.
template <class T, class I>
[[nodiscard]] ComponentPtr<I> Create() {
    CComponentObject<T>* created = nullptr;
    ThrowIfFailed(CComponentObject<T>::CreateObject(&created));
    const auto object = ComponentPtr<CComponentObject<T>>::Attach(created);
    ComponentPtr<I> result;
    ThrowIfFailed(object.QueryTo(result));
    return result;
}

}  // namespace Harbor
