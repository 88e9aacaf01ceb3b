#include "ConfigService.h"

#include "ChangeReport.h"
#include "Common/Base/Text.h"
#include "Harbor/Failure.h"
#include "ModifySubscription.h"
#include "NodeFabric/Authoring.h"
#include "ServiceMethod.h"

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

// Throws what setting the attributes would throw.
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

// The node that a write opens or adds. The destructor removes the nodes that were added, unless Keep was called. So a
// write that is repeated after a failure still reports the addition.
class WrittenNode {
public:
    WrittenNode() = default;
    WrittenNode(const WrittenNode&) = delete;
    WrittenNode& operator=(const WrittenNode&) = delete;
    ~WrittenNode() {
        if (firstAdded_) (void)AcnRemoveChild(parentOfFirst_.Handle(), firstAdded_.Handle());
    }

    void OpenOrAdd(const ACNode& top, std::u16string_view path) {
        node_ = top;
        for (const std::u16string_view element : Split(path, u"\\")) {
            const WideString name(element);
            ACNode child = node_.FindChild(name.c_str());
            isNew_ = !child;
            if (isNew_) child = Add(name);
            node_ = std::move(child);
        }
    }
    [[nodiscard]] ACNode& Node() noexcept { return node_; }
    [[nodiscard]] bool IsNew() const noexcept { return isNew_; }
    void Keep() noexcept { firstAdded_ = ACNode(); }

private:
    ACNode Add(const WideString& name) {
        ACNode child = AddChild(node_, name);
        if (!firstAdded_) {
            parentOfFirst_ = node_;
            firstAdded_ = child;
        }
        return child;
    }

    ACNode node_;
    ACNode parentOfFirst_, firstAdded_;
    bool isNew_ = false;
};

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
    return ServiceMethod(TRACED_METHOD(Dbg, "ConfigServer::ConfigService::AddSubscription"), [&] {
        if (callback == nullptr || subscription == nullptr) ThrowError(E_POINTER);
        *subscription = ModifySubscription::Create(dispatcher_, WatchScope(filter, parameters), callback).Detach();
        return S_OK;
    });
}

HRESULT ConfigService::RemoveSubscription(IACModifySubscription* subscription) {
    return ServiceMethod(TRACED_METHOD(Dbg, "ConfigServer::ConfigService::RemoveSubscription"), [&] {
        if (subscription == nullptr) ThrowError(E_POINTER);
        return dispatcher_->EndWatch(subscription);
    });
}

HRESULT ConfigService::WriteNode(std::u16string_view path, const std::vector<TextAttribute>& attributes) {
    return ServiceMethod(TRACED_METHOD(Dbg, "ConfigServer::ConfigService::WriteNode"), [&] {
        if (!IsNodePath(path) || !HasParent(path)) ThrowError(E_INVALIDARG);
        TryAttributes(attributes);
        const LockGuard guard(writeLock_);
        WrittenNode written;
        written.OpenOrAdd(top_, path);
        SetAttributes(written.Node(), attributes);
        ReportWrite(written.Node(), WideString(path), AttributesWritten | (written.IsNew() ? NodeAdded : 0));
        written.Keep();
        return S_OK;
    });
}

HRESULT ConfigService::CopyTree(AcnHandle* copy) {
    return ServiceMethod(TRACED_METHOD(Dbg, "ConfigServer::ConfigService::CopyTree"), [&] {
        if (copy == nullptr) ThrowError(E_POINTER);
        const LockGuard guard(writeLock_);
        const ACNode clone = top_.Clone(AcnWholeTree, 0);
        return AcnDuplicateNodeHandle(clone.Handle(), copy);
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
    try {
        return Create<ConfigService, IConfigTree>();
    } catch (const HRX& failure) {
        // The caller has only the public headers.
        throw Failure(failure.Code(), "CreateConfigServer: " + ToUtf8(failure.ToText()));
    }
}

}  // namespace ConfigServer
