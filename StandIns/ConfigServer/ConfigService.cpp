#include "ConfigService.h"

#include "ChangeReport.h"
#include "Common/Base/Text.h"
#include "Common/Failures/CodeOfCall.h"
#include "Common/Failures/MethodEdge.h"
#include "ModifySubscription.h"
#include "NodeFabric/Authoring.h"

namespace ConfigServer {

using namespace Harbor;

namespace {

bool HasParent(std::u16string_view path) {
    return path.rfind(u'\\') > 0;
}

void SetAttributes(ACNode& node, const std::vector<TextAttribute>& attributes) {
    for (const auto& [name, value] : attributes) {
        node.SetText(name.c_str(), value.c_str(), static_cast<std::uint32_t>(value.size()));
    }
}

// Throws what setting them would throw.
void TryAttributes(const std::vector<TextAttribute>& attributes) {
    ACNode scratch;
    scratch.Create(nullptr, nullptr);
    SetAttributes(scratch, attributes);
}

ACNode AddChild(const ACNode& parent, const WideString& name) {
    ACNode child;
    child.Create(name.c_str(), nullptr);
    ThrowIfFailed(AcnAppendChild(parent.Handle(), child.Handle()));
    return child;
}

struct OpenedNode {
    ACNode node;
    bool isNew = false;
};

OpenedNode OpenOrAdd(const ACNode& top, std::u16string_view path) {
    OpenedNode opened{top};
    for (const std::u16string_view element : Split(path, u"\\")) {
        const WideString name(element);
        ACNode child = opened.node.FindChild(name.c_str());
        opened.isNew = !child;
        opened.node = child ? std::move(child) : AddChild(opened.node, name);
    }
    return opened;
}

}  // namespace

HRESULT ConfigService::FinalConstruct() noexcept {
    return CodeOfCall([this] {
        top_.Create(nullptr, nullptr);
        dispatcher_->Run();
        return S_OK;
    });
}

void ConfigService::FinalRelease() noexcept {
    dispatcher_->Stop();
}

HRESULT ConfigService::AddSubscription(AcnHandle filter, AcnHandle parameters, IACModifyCallback* callback,
                                       IACModifySubscription** subscription) {
    return MethodEdge(TRACED_METHOD(Dbg, "ConfigServer::ConfigService::AddSubscription"), [&] {
        if (callback == nullptr || subscription == nullptr) ThrowError(E_POINTER);
        auto created = CreateComponent<ModifySubscription>();
        created->Open(dispatcher_, WatchScope(filter, parameters), callback);
        *subscription = created.Detach();
        return S_OK;
    });
}

HRESULT ConfigService::RemoveSubscription(IACModifySubscription* subscription) {
    return MethodEdge(TRACED_METHOD(Dbg, "ConfigServer::ConfigService::RemoveSubscription"), [&] {
        if (subscription == nullptr) ThrowError(E_POINTER);
        return dispatcher_->EndWatch(subscription);
    });
}

HRESULT ConfigService::WriteNode(std::u16string_view path, const std::vector<TextAttribute>& attributes) {
    return MethodEdge(TRACED_METHOD(Dbg, "ConfigServer::ConfigService::WriteNode"), [&] {
        if (!IsNodePath(path) || !HasParent(path)) ThrowError(E_INVALIDARG);
        TryAttributes(attributes);
        const LockGuard guard(writeLock_);
        auto [node, isNew] = OpenOrAdd(top_, path);
        SetAttributes(node, attributes);
        ReportWrite(node, WideString(path), AttributesWritten | (isNew ? NodeAdded : 0));
        return S_OK;
    });
}

void ConfigService::ReportWrite(const ACNode& changed, const WideString& path, std::int64_t changes) {
    std::vector<PendingReport> reports;
    for (auto& watch : dispatcher_->WatchesOf(path, changes)) {
        reports.push_back({std::move(watch), ReportChange(changed, path, changes)});
    }
    dispatcher_->Post(std::move(reports));
}

ComponentPtr<IConfigTree> CreateConfigServer() {
    return Create<ConfigService, IConfigTree>();
}

}  // namespace ConfigServer
