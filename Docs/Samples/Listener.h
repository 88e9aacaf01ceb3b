// A listener that calls a function.
#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "DataCollection/ActionManager.h"

class Listener final : public DataCollection::ActionManagement::IActionListener {
public:
    // `onAction` is called with the name of the action, on the manager's worker thread. It must return quickly and must
    // not throw.
    explicit Listener(std::function<void(const std::u16string& action)> onAction) : onAction_(std::move(onAction)) {}

    Harbor::HRESULT OnActionTriggered(DataCollection::ActionManagement::IActionSubscription*,
                                      DataCollection::IAction* action) override {
        std::u16string name;
        action->GetName(&name);
        onAction_(name);
        return Harbor::S_OK;
    }

    // This object belongs to the function that created it and lives longer than its subscription, so nothing happens at
    // 0.
    std::uint32_t AddRef() override { return ++holders_; }
    std::uint32_t Release() override { return --holders_; }
    // IActionListener has no id, so only the base of all interfaces can be queried.
    Harbor::HRESULT QueryInterface(const Harbor::GUID* iid, void** result) override {
        if (iid == nullptr || result == nullptr) return Harbor::E_INVALIDARG;
        if (!(*iid == IComponentUnknown::Id)) return Harbor::E_NOINTERFACE;
        AddRef();
        *result = static_cast<IComponentUnknown*>(this);
        return Harbor::S_OK;
    }

private:
    const std::function<void(const std::u16string&)> onAction_;
    std::atomic<std::uint32_t> holders_{0};
};
