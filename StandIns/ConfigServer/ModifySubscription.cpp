#include "ModifySubscription.h"

#include "Common/Logging/FunctionTrace.h"

namespace ConfigServer {

using namespace Harbor;

void ModifySubscription::Open(std::shared_ptr<Dispatcher> dispatcher, const WatchScope& scope,
                              IACModifyCallback* callback) {
    watch_ = std::make_shared<Watch>(Watch{.scope = scope, .callback = callback, .subscription = this});
    dispatcher_ = std::move(dispatcher);
    dispatcher_->AddWatch(watch_);
}

HRESULT ModifySubscription::Start() {
    TRACE_FUNCTION(Dbg, u"ConfigServer::ModifySubscription::Start");
    return dispatcher_->StartWatch(*watch_);
}

void ModifySubscription::FinalRelease() noexcept {
    if (dispatcher_) dispatcher_->ForgetWatch(*watch_);
}

}  // namespace ConfigServer
