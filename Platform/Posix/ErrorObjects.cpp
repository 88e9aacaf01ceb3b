#include "Platform/ErrorObjects.h"

#include <pthread.h>

#include <atomic>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <optional>

#include "ErrnoFailure.h"
#include "Platform/Errors.h"

namespace Platform {

namespace {

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000E);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057);

// The bytes in front of a BSTR. The last four are its size; the text after them is aligned to eight.
constexpr std::size_t HeaderSize = 8;
constexpr std::size_t SizeOffset = 4;

class ErrorObject final : public IErrorInfo, public ICreateErrorInfo {
public:
    HRESULT QueryInterface(const GUID* iid, void** result) noexcept override {
        if (iid == nullptr || result == nullptr) return E_POINTER;
        if (*iid == IUnknown::Id || *iid == IErrorInfo::Id) {
            *result = static_cast<IErrorInfo*>(this);
        } else if (*iid == ICreateErrorInfo::Id) {
            *result = static_cast<ICreateErrorInfo*>(this);
        } else {
            *result = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() noexcept override { return references_.fetch_add(1, std::memory_order_relaxed) + 1; }
    std::uint32_t Release() noexcept override {
        const std::uint32_t left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0) const std::unique_ptr<ErrorObject> last(this);
        return left;
    }

    HRESULT GetGUID(GUID* guid) noexcept override { return Read(guid_, guid); }
    HRESULT GetSource(BSTR* source) noexcept override { return ReadText(source_, source); }
    HRESULT GetDescription(BSTR* description) noexcept override { return ReadText(description_, description); }
    HRESULT GetHelpFile(BSTR* file) noexcept override { return ReadText(helpFile_, file); }
    HRESULT GetHelpContext(DWORD* context) noexcept override { return Read(helpContext_, context); }

    HRESULT SetGUID(const GUID* guid) noexcept override {
        if (guid == nullptr) return E_POINTER;
        guid_ = *guid;
        return S_OK;
    }
    HRESULT SetSource(const WideChar* source) noexcept override { return StoreText(source_, source); }
    HRESULT SetDescription(const WideChar* description) noexcept override {
        return StoreText(description_, description);
    }
    HRESULT SetHelpFile(const WideChar* file) noexcept override { return StoreText(helpFile_, file); }
    HRESULT SetHelpContext(DWORD context) noexcept override {
        helpContext_ = context;
        return S_OK;
    }

private:
    using Text = std::optional<WideString>;

    template <typename Field>
    static HRESULT Read(const Field& field, Field* result) noexcept {
        if (result == nullptr) return E_POINTER;
        *result = field;
        return S_OK;
    }
    static HRESULT ReadText(const Text& field, BSTR* result) noexcept {
        if (result == nullptr) return E_POINTER;
        *result = field ? SysAllocStringLen(field->data(), static_cast<std::uint32_t>(field->size())) : nullptr;
        return field && *result == nullptr ? E_OUTOFMEMORY : S_OK;
    }
    static HRESULT StoreText(Text& field, const WideChar* text) noexcept {
        return Posix::OrOutOfMemory(E_OUTOFMEMORY, [&] {
            field = text != nullptr ? Text(text) : std::nullopt;
            return S_OK;
        });
    }

    std::atomic<std::uint32_t> references_{1};
    GUID guid_{};
    Text source_, description_, helpFile_;
    DWORD helpContext_ = 0;
};

void ReleasePending(void* object) noexcept {
    static_cast<IErrorInfo*>(object)->Release();
}

// One counted object per thread. A thread-local object with a destructor would keep the library in memory; a key is
// deleted when the library is unloaded.
class ThreadSlot {
public:
    ThreadSlot() noexcept : isMade_(::pthread_key_create(&key_, ReleasePending) == 0) {}
    ~ThreadSlot() {
        if (!isMade_) return;
        if (IErrorInfo* const pending = Exchange(nullptr)) pending->Release();
        ::pthread_key_delete(key_);
    }
    ThreadSlot(const ThreadSlot&) = delete;
    ThreadSlot& operator=(const ThreadSlot&) = delete;

    // The slot takes over one reference on `object`. Null always empties the slot.
    [[nodiscard]] bool Put(IErrorInfo* object) noexcept {
        if (!isMade_) return object == nullptr;
        IErrorInfo* const previous = Pending();
        if (::pthread_setspecific(key_, object) != 0) return false;
        if (previous != nullptr) previous->Release();
        return true;
    }
    [[nodiscard]] IErrorInfo* Take() noexcept { return isMade_ ? Exchange(nullptr) : nullptr; }

private:
    IErrorInfo* Pending() const noexcept { return static_cast<IErrorInfo*>(::pthread_getspecific(key_)); }
    IErrorInfo* Exchange(IErrorInfo* object) noexcept {
        IErrorInfo* const previous = Pending();
        ::pthread_setspecific(key_, object);
        return previous;
    }

    pthread_key_t key_{};
    const bool isMade_;
};

ThreadSlot ErrorObjectSlot;

}  // namespace

BSTR SysAllocStringLen(const WideChar* text, std::uint32_t length) noexcept {
    const std::uint64_t size = std::uint64_t{length} * sizeof(WideChar);
    if (size > std::numeric_limits<std::uint32_t>::max()) return nullptr;
    auto* const block = static_cast<char*>(std::calloc(HeaderSize + size + sizeof(WideChar), 1));
    if (block == nullptr) return nullptr;
    const auto storedSize = static_cast<std::uint32_t>(size);
    std::memcpy(block + SizeOffset, &storedSize, sizeof storedSize);
    if (text != nullptr) std::memcpy(block + HeaderSize, text, size);
    return reinterpret_cast<BSTR>(block + HeaderSize);
}

void SysFreeString(BSTR text) noexcept {
    if (text != nullptr) std::free(reinterpret_cast<char*>(text) - HeaderSize);
}

std::uint32_t SysStringLen(BSTR text) noexcept {
    if (text == nullptr) return 0;
    std::uint32_t size = 0;
    std::memcpy(&size, reinterpret_cast<const char*>(text) - (HeaderSize - SizeOffset), sizeof size);
    return size / static_cast<std::uint32_t>(sizeof(WideChar));
}

HRESULT CreateErrorInfo(ICreateErrorInfo** result) noexcept {
    if (result == nullptr) return E_POINTER;
    *result = new (std::nothrow) ErrorObject;
    return *result != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT SetErrorInfo(DWORD reserved, IErrorInfo* object) noexcept {
    if (reserved != 0) return E_INVALIDARG;
    if (object != nullptr) object->AddRef();
    if (ErrorObjectSlot.Put(object)) return S_OK;
    if (object != nullptr) object->Release();
    return E_OUTOFMEMORY;
}

HRESULT GetErrorInfo(DWORD reserved, IErrorInfo** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = reserved == 0 ? ErrorObjectSlot.Take() : nullptr;
    if (reserved != 0) return E_INVALIDARG;
    return *object != nullptr ? S_OK : S_FALSE;
}

}  // namespace Platform
