// A configuration service: it reports each change that Write makes to the watches that cover it. It keeps no tree; a
// real service reports the changes of the one that it stores.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "Harbor/ConfigService.h"
#include "Harbor/Nodes.h"
#include "Harbor/Object.h"
#include "NodeFabric/Authoring.h"

// What a watch covers, from the two nodes of AddSubscription.
struct Watch {
    Watch(AcnHandle filter, AcnHandle parameters, Harbor::IACModifyCallback* client)
        : path(Harbor::GetText(filter, Harbor::WatchFilter::NodePath)),
          onlyBelow(Harbor::GetInt64(filter, Harbor::WatchFilter::IsParent) != 0),
          levels(Harbor::GetInt64(filter, Harbor::WatchFilter::MaxDepth)),
          kinds(Harbor::GetInt64(parameters, Harbor::WatchParameters::ChangesMask)),
          callback(client) {}

    bool Covers(std::u16string_view changed, std::int64_t kind) const {
        if (!isStarted || (kinds & kind) == 0 || !changed.starts_with(path)) return false;
        const std::u16string_view below = changed.substr(path.size());
        return below.empty() ? !onlyBelow : below[0] == u'\\' && std::ranges::count(below, u'\\') <= levels;
    }

    Harbor::WideString path;
    bool onlyBelow;
    std::int64_t levels, kinds;
    Harbor::IACModifyCallback* callback;  // not counted: the client ends its watch before it ends itself
    bool isStarted = false;
};

// Shared by the service and its subscriptions. The lock is held while a callback runs, so the end of a watch waits for
// a report that is under way on another thread. It is recursive, since a callback may end its own watch.
struct Watches {
    std::recursive_mutex lock;
    std::map<Harbor::IACModifySubscription*, Watch> all;
};

class Subscription final : public Harbor::Object<Harbor::IACModifySubscription> {
public:
    explicit Subscription(std::shared_ptr<Watches> watches) : watches_(std::move(watches)) {}

    Harbor::HRESULT Start() override {
        const std::lock_guard guard(watches_->lock);
        const auto watch = watches_->all.find(this);
        if (watch == watches_->all.end()) return Harbor::E_FAIL;
        watch->second.isStarted = true;
        return Harbor::S_OK;
    }

private:
    void FinalRelease() noexcept override {
        const std::lock_guard guard(watches_->lock);
        watches_->all.erase(this);
    }
    const std::shared_ptr<Watches> watches_;
};

// The report of one change.
class Report final : public Harbor::Object<Harbor::IACNodeModifyEnum, Harbor::IACNodeEnumerator> {
public:
    explicit Report(Harbor::NodeHandle notification) : notification_(std::move(notification)) {}

    Harbor::HRESULT GetNodeEnumerator(Harbor::IACNodeEnumerator** out) override {
        AddRef();
        *out = this;
        return Harbor::S_OK;
    }
    Harbor::HRESULT Reset() override { return isAtEnd_ = false, Harbor::S_OK; }
    Harbor::HRESULT Next(AcnHandle* node) override {
        if (std::exchange(isAtEnd_, true)) return Harbor::S_FALSE;
        return AcnDuplicateNodeHandle(notification_.get(), node);
    }

private:
    const Harbor::NodeHandle notification_;
    bool isAtEnd_ = false;
};

class ConfigurationService final : public Harbor::Object<Harbor::IACConfigService> {
public:
    // Reports that the attribute `name` of the node at `path` was set to `text`. Returns after the callbacks.
    void Write(const Harbor::WideString& path, const Harbor::WideChar* name, std::u16string_view text) {
        constexpr std::int64_t attributesWritten = 1;
        const Harbor::NodeHandle changed = Harbor::NewNode(path.substr(path.rfind(u'\\') + 1).c_str());
        Harbor::SetText(changed.get(), name, text);
        Harbor::NodeHandle notification = Harbor::NewNode(u"Change");
        Harbor::SetText(notification.get(), Harbor::ChangeNotification::ModifiedNodePath, path);
        Harbor::SetInt64(notification.get(), Harbor::ChangeNotification::ChangesMask, attributesWritten);
        Harbor::ThrowIfFailed(AcnAppendChild(notification.get(), changed.get()), "AcnAppendChild");
        const auto report = Harbor::MakeObject<Report>(std::move(notification));

        const std::lock_guard guard(watches_->lock);
        std::vector<Harbor::ComponentPtr<Harbor::IACModifySubscription>> covering;  // a callback may change the map
        for (const auto& [key, watch] : watches_->all) {
            if (watch.Covers(path, attributesWritten)) covering.emplace_back(key);
        }
        for (const auto& subscription : covering) {
            const auto watch = watches_->all.find(subscription.Get());
            if (watch != watches_->all.end()) watch->second.callback->OnTriggered(subscription.Get(), 1, report.Get());
        }
    }

    Harbor::HRESULT AddSubscription(AcnHandle filter, AcnHandle parameters, Harbor::IACModifyCallback* callback,
                                    Harbor::IACModifySubscription** out) override {
        return Harbor::CodeOf([&] {
            if (callback == nullptr || out == nullptr) return Harbor::E_POINTER;
            const auto subscription = Harbor::MakeObject<Subscription>(watches_);
            const std::lock_guard guard(watches_->lock);
            watches_->all.emplace(subscription.Get(), Watch(filter, parameters, callback));
            subscription->AddRef();
            *out = subscription.Get();
            return Harbor::S_OK;
        });
    }
    Harbor::HRESULT RemoveSubscription(Harbor::IACModifySubscription* subscription) override {
        const std::lock_guard guard(watches_->lock);
        return watches_->all.erase(subscription) == 1 ? Harbor::S_OK : Harbor::NOT_FOUND;
    }

    std::size_t WatchCount() const {
        const std::lock_guard guard(watches_->lock);
        return watches_->all.size();
    }

private:
    const std::shared_ptr<Watches> watches_ = std::make_shared<Watches>();
};
