// A configuration service whose results, watches and reports the tests choose. It allocates nothing itself, so that a
// sweep of failing allocations affects only those of the product.
#pragma once

#include <array>

#include "TestSupport.h"

// An object that the test owns. It counts the references that others hold.
template <class... Interfaces>
class Neighbour : public Interfaces... {
public:
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override { return --references; }
    HRESULT QueryInterface(const GUID*, void**) override { return E_NOINTERFACE; }

    std::atomic<std::uint32_t> references{0};
};

// Returns `answer`, unless the sweep makes this call fail.
inline HRESULT AnswerOf(const char* call, HRESULT answer) {
    constexpr HRESULT Refusal = MakeHResult(0x80045678);
    return InjectedFault.Strikes(Fallible::Call, call, Refusal) ? Refusal : answer;
}

struct FakeWatch final : Neighbour<IACModifySubscription> {
    HRESULT Start() override { return AnswerOf("IACModifySubscription::Start", startResult); }
    std::uint32_t Release() override {
        const std::uint32_t left = Neighbour::Release();
        if (left == 0) onEnd();
        return left;
    }

    HRESULT startResult = S_OK;
    std::function<void()> onEnd = [] {};
};

// The service and the report that it makes.
class FakeService : public Neighbour<IACConfigService, IACNodeModifyEnum, IACNodeEnumerator> {
public:
    FakeService() { removed.reserve(100); }

    HRESULT QueryInterface(const GUID*, void** result) override {
        *result = ComponentPtr<IACConfigService>(this).Detach();
        return S_OK;
    }
    HRESULT AddSubscription(AcnHandle filter, AcnHandle parameters, IACModifyCallback* client,
                            IACModifySubscription** watch) override {
        onAdd(filter, parameters);
        callback = client;
        if (!oneWatchForAll) latest_ = (latest_ + 1) % watches.size();
        const HRESULT code = AnswerOf("AddSubscription", addResult);
        if (Succeeded(code)) *watch = ComponentPtr<IACModifySubscription>(&Latest()).Detach();
        return code;
    }
    std::uint32_t Release() override {
        const std::uint32_t left = Neighbour::Release();
        if (left == 0) onEnd();
        return left;
    }
    HRESULT RemoveSubscription(IACModifySubscription* watch) override {
        removed.push_back(watch);
        onRemove();
        return AnswerOf("RemoveSubscription", removeResult);
    }
    HRESULT GetNodeEnumerator(IACNodeEnumerator** out) override {
        const HRESULT code = AnswerOf("GetNodeEnumerator", walkResult);
        if (Succeeded(code)) *out = ComponentPtr<IACNodeEnumerator>(this).Detach();
        return code;
    }
    HRESULT Reset() override {
        place_ = 0;
        return E_FAIL;  // no caller reads it
    }
    HRESULT Next(AcnHandle* node) override {
        return place_ < nodes.size() ? AcnDuplicateNodeHandle(nodes[place_++].Handle(), node) : E_FAIL;
    }

    FakeWatch& Latest() { return watches[latest_]; }
    HRESULT Report(IACModifySubscription* watch) {
        place_ = SIZE_MAX;  // without a Reset nothing is found
        return callback->OnTriggered(watch, 0, this);
    }
    HRESULT Report() { return Report(&Latest()); }

    HRESULT addResult = S_OK, removeResult = S_OK, walkResult = S_OK;
    std::function<void(AcnHandle, AcnHandle)> onAdd = [](AcnHandle, AcnHandle) {};
    std::function<void()> onRemove = [] {}, onEnd = [] {};
    bool oneWatchForAll = false;
    std::array<FakeWatch, 8> watches;  // used in turn, so that an ended watch differs from the next
    std::vector<ACNode> nodes;         // the notifications of the report
    IACModifyCallback* callback = nullptr;
    std::vector<IACModifySubscription*> removed;

private:
    std::size_t latest_ = 0, place_ = 0;
};
