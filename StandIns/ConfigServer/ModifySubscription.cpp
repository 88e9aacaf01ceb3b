#include "ModifySubscription.h"

#include "Common/Components/ComponentsModule.h"
#include "Common/Components/DbgAliveObjectsTracker.h"
#include "Common/Logging/FunctionTrace.h"

namespace ConfigServer {

using namespace Harbor;

namespace {

constexpr const char* Tag = "ConfigServer::ModifySubscription::ModifySubscription";

}  // namespace

ComponentPtr<IACModifySubscription> ModifySubscription::Create(std::shared_ptr<Dispatcher> dispatcher,
                                                               const WatchScope& scope, IACModifyCallback* callback) {
    std::unique_ptr<ModifySubscription> created(new ModifySubscription(std::move(dispatcher), scope, callback));
    created->dispatcher_->AddWatch(created->watch_);
    return ComponentPtr<IACModifySubscription>::Attach(created.release());
}

ModifySubscription::ModifySubscription(std::shared_ptr<Dispatcher> dispatcher, const WatchScope& scope,
                                       IACModifyCallback* callback)
    : dispatcher_(std::move(dispatcher)),
      watch_(std::make_shared<Watch>(Watch{.scope = scope, .callback = callback, .subscription = this})) {
    DbgAliveObjectsTracker::Instance().Track(this, Tag);
    ComponentsModule::Instance().LockModule();
}

ModifySubscription::~ModifySubscription() {
    DbgAliveObjectsTracker::Instance().Untrack(this);
    ComponentsModule::Instance().UnlockModule();
}

std::uint32_t ModifySubscription::AddRef() {
    return references_.Add();
}

std::uint32_t ModifySubscription::Release() {
    const std::uint32_t left = references_.Remove();
    if (left != 0) return left;
    dispatcher_->ForgetWatch(*watch_);
    const std::unique_ptr<ModifySubscription> ended(this);
    return 0;
}

HRESULT ModifySubscription::QueryInterface(const GUID* iid, void** result) {
    if (iid == nullptr || result == nullptr) return E_INVALIDARG;
    if (*iid != IComponentUnknown::Id) return E_NOINTERFACE;
    *result = static_cast<IComponentUnknown*>(this);
    AddRef();
    return S_OK;
}

HRESULT ModifySubscription::Start() {
    TRY_TRACE_FUNCTION(Dbg, u"ConfigServer::ModifySubscription::Start");
    return dispatcher_->StartWatch(*watch_);
}

}  // namespace ConfigServer
