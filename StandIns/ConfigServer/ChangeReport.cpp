#include "ChangeReport.h"

#include "CreateComponent.h"
#include "NodeFabric/Authoring.h"
#include "ServiceMethod.h"

namespace ConfigServer {

using namespace Harbor;

namespace {

class NodeEnumerator : public ComponentRoot, public IACNodeEnumerator {
public:
    static constexpr const char* Tag = "CComponentObject<class ConfigServer::NodeEnumerator>::CComponentObject";
    using Queryable = NoQueryableInterfaces;

    void SetNotification(const ACNode& notification) { notification_ = notification; }

    HRESULT Reset() override {
        given_ = false;
        return S_OK;
    }

    HRESULT Next(AcnHandle* node) override {
        if (node == nullptr) return E_POINTER;
        if (given_) return S_FALSE;
        const HRESULT code = AcnDuplicateNodeHandle(notification_.Handle(), node);
        given_ = Succeeded(code);
        return code;
    }

private:
    ACNode notification_;
    bool given_ = false;
};

class NodeModifyEnum : public ComponentRoot, public IACNodeModifyEnum {
public:
    static constexpr const char* Tag = "CComponentObject<class ConfigServer::NodeModifyEnum>::CComponentObject";
    using Queryable = NoQueryableInterfaces;

    void SetNotification(ACNode notification) noexcept { notification_ = std::move(notification); }

    HRESULT GetNodeEnumerator(IACNodeEnumerator** out) override {
        return ServiceMethod(TRACED_METHOD(Dbg2, "ConfigServer::NodeModifyEnum::GetNodeEnumerator"), [&] {
            if (out == nullptr) ThrowError(E_POINTER);
            auto enumerator = CreateComponent<NodeEnumerator>();
            enumerator->SetNotification(notification_);
            *out = enumerator.Detach();
            return S_OK;
        });
    }

private:
    ACNode notification_;
};

// The full path of a node begins with that of its parent. So the notification node has the path of the changed node's
// parent as its name: the snapshot below it then reports the full path of the original.
ACNode MakeNotification(const ACNode& changed, const WideString& path, std::int64_t changes) {
    const WideString parentPath = path.substr(1, path.rfind(u'\\') - 1);
    ACNode notification;
    notification.Create(parentPath.c_str(), nullptr);
    notification.SetText(ChangeNotification::ModifiedNodePath, path.c_str(), static_cast<std::uint32_t>(path.size()));
    notification.SetInt64(ChangeNotification::ChangesMask, changes);
    const ACNode snapshot = changed.Clone(AcnWholeTree, 0);
    ThrowIfFailed(AcnAppendChild(notification.Handle(), snapshot.Handle()));
    return notification;
}

}  // namespace

ComponentPtr<IACNodeModifyEnum> ReportChange(const ACNode& changed, const WideString& path, std::int64_t changes) {
    auto report = CreateComponent<NodeModifyEnum>();
    report->SetNotification(MakeNotification(changed, path, changes));
    return ComponentPtr<IACNodeModifyEnum>::Attach(report.Detach());
}

}  // namespace ConfigServer
