// A client's subscription. Its last Release ends its watch.
#pragma once

#include <memory>

#include "Dispatcher.h"
#include "Harbor/ReferenceCount.h"

namespace ConfigServer {

// It counts its references itself: the last Release waits for a running callback, which may still call AddRef and
// Release on the pointer that it was given. Such calls must not end the subscription a second time.
class ModifySubscription final : public Harbor::IACModifySubscription {
public:
    // Returns a subscription whose watch is not started. Failures are thrown as HRX or std::bad_alloc.
    [[nodiscard]] static Harbor::ComponentPtr<Harbor::IACModifySubscription> Create(
        std::shared_ptr<Dispatcher> dispatcher, const WatchScope& scope, Harbor::IACModifyCallback* callback);

    std::uint32_t AddRef() override;
    std::uint32_t Release() override;
    Harbor::HRESULT QueryInterface(const Harbor::GUID* iid, void** result) override;

    Harbor::HRESULT Start() override;

private:
    ModifySubscription(std::shared_ptr<Dispatcher> dispatcher, const WatchScope& scope,
                       Harbor::IACModifyCallback* callback);
    ~ModifySubscription();
    friend std::default_delete<ModifySubscription>;

    const std::shared_ptr<Dispatcher> dispatcher_;
    const std::shared_ptr<Watch> watch_;
    Harbor::ReferenceCount references_;
};

}  // namespace ConfigServer
