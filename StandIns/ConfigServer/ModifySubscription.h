// A client's subscription: its last Release is the end of its watch.
#pragma once

#include <memory>

#include "CreateComponent.h"
#include "Dispatcher.h"

namespace ConfigServer {

class ModifySubscription : public Harbor::ComponentRoot, public Harbor::IACModifySubscription {
public:
    static constexpr const char* Tag = "CComponentObject<class ConfigServer::ModifySubscription>::CComponentObject";
    using Queryable = NoQueryableInterfaces;

    // Once, by the creator.
    void Open(std::shared_ptr<Dispatcher> dispatcher, const WatchScope& scope, Harbor::IACModifyCallback* callback);

    Harbor::HRESULT Start() override;

    // Here and not in the destructor: a callback that is waited for may still use the object.
    void FinalRelease() noexcept;

private:
    std::shared_ptr<Dispatcher> dispatcher_;
    std::shared_ptr<Watch> watch_;
};

}  // namespace ConfigServer
