// The component of the service: the tree, and the interfaces for its host and for its clients.
#pragma once

#include <memory>

#include "Common/Base/Lock.h"
#include "Common/Components/CComponentObject.h"
#include "Common/Nodes/ACNode.h"
#include "ConfigServer/ConfigServer.h"
#include "Dispatcher.h"

namespace ConfigServer {

class ConfigService : public Harbor::ComponentRoot, public Harbor::IACConfigService, public IConfigTree {
public:
    static constexpr const char* Tag = "CComponentObject<class ConfigServer::ConfigService>::CComponentObject";
    using Queryable = Harbor::InterfaceList<Harbor::IACConfigService, IConfigTree>;

    Harbor::HRESULT AddSubscription(AcnHandle filter, AcnHandle parameters, Harbor::IACModifyCallback* callback,
                                    Harbor::IACModifySubscription** subscription) override;
    Harbor::HRESULT RemoveSubscription(Harbor::IACModifySubscription* subscription) override;
    Harbor::HRESULT WriteNode(std::u16string_view path, const std::vector<TextAttribute>& attributes) override;
    Harbor::HRESULT CopyTree(AcnHandle* copy) override;

    Harbor::HRESULT FinalConstruct() noexcept;
    void FinalRelease() noexcept;

private:
    void ReportWrite(const Harbor::ACNode& changed, const Harbor::WideString& path, std::int64_t changes);

    const std::shared_ptr<Dispatcher> dispatcher_ = std::make_shared<Dispatcher>();

    Harbor::Lock writeLock_;  // held for a whole write, so that reports come in the order of the writes
    Harbor::ACNode top_;      // the root of the tree; it has no name and is not an element of a path
};

}  // namespace ConfigServer
