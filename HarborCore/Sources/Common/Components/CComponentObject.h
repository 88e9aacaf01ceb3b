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
    std::uint32_t AddRef() override { return this->references_.Add(); }

    std::uint32_t Release() override {
        const std::uint32_t left = this->references_.Remove();
        if (left == 0) {
            this->FinalRelease();
            delete this;
        }
        return left;
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
