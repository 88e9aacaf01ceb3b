#include "Subsystems/ActionManager/ActionImpl.h"

#include "Common/Failures/MethodEdge.h"

namespace DataCollection {

using namespace Harbor;

HRESULT ActionImpl::GetType(GUID* type) {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionImpl::GetType"), [&] {
        if (name_.empty()) return E_UNEXPECTED;
        *type = actionTypeId_;
        return S_OK;
    });
}

HRESULT ActionImpl::GetName(WideString* name) {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionImpl::GetName"), [&] {
        if (name_.empty()) return E_UNEXPECTED;
        *name = name_;
        return S_OK;
    });
}

HRESULT ActionImpl::SetNameAndType(const WideString& name, const GUID& type) {
    return MethodEdge(TRACED_METHOD(Dbg, "DataCollection::ActionImpl::SetNameAndType"), [&] {
        if (name.empty() || type == GUID{}) return E_INVALIDARG;
        actionTypeId_ = type;
        name_ = name;
        return S_OK;
    });
}

HRESULT ActionImpl::IsDisposed(bool* disposed) {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionImpl::IsDisposed");
    *disposed = attachedSubscriptions_.load() == 0;
    return S_OK;
}

HRESULT ActionImpl::OnSubscriptionAttached() {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionImpl::OnSubscriptionAttached");
    ++attachedSubscriptions_;
    return S_OK;
}

HRESULT ActionImpl::OnSubscriptionDisposed() {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionImpl::OnSubscriptionDisposed");
    if (--attachedSubscriptions_ == 0) ++DisposalCount;
    return S_OK;
}

HRESULT ActionImpl::SetTriggered(bool triggered) {
    TRY_TRACE_FUNCTION(Dbg, u"DataCollection::ActionImpl::SetTriggered");
    Mark(triggered);
    return S_OK;
}

void ActionImpl::Mark(bool triggered) noexcept {
    triggered_.store(triggered);
    ActionManagement::StateWord* const word = marksWord_.load();
    if (triggered && word != nullptr) word->fetch_or(ActionManagement::SubscriptionState::Marked);
}

HRESULT ActionImpl::GetTriggered(bool* triggered) {
    TRY_TRACE_FUNCTION(Dbg2, u"DataCollection::ActionImpl::GetTriggered");
    *triggered = IsMarked();
    return S_OK;
}

}  // namespace DataCollection
