// A configuration service that does what the test wants, its watches and its reports.
#pragma once

#include "Common/Nodes/NodeDump.h"
#include "ModuleBroker/ModuleBroker.h"
#include "TestSupport.h"

class FakeWatch : public ComponentRoot, public IACModifySubscription {
public:
    static constexpr const char* Tag = "FakeWatch";
    using Queryable = InterfaceList<IACModifySubscription>;

    HRESULT Start() override { return onStart(); }

    std::function<HRESULT()> onStart = [] { return S_OK; };
};

class FakeConfigService : public ComponentRoot, public IACConfigService {
public:
    static constexpr const char* Tag = "FakeConfigService";
    using Queryable = InterfaceList<IACConfigService>;

    HRESULT AddSubscription(AcnHandle filter, AcnHandle parameters, IACModifyCallback* client,
                            IACModifySubscription** subscription) override {
        WideStream dump;
        dump << ACNode(filter, false) << ACNode(parameters, false);
        asked = Narrow(dump.Text());
        callback = client;
        if (!next) next = NewObject<FakeWatch>();
        watches.push_back(next.Get());
        if (Succeeded(addResult)) *subscription = ComponentPtr(next).Detach();
        if (!oneWatchForAll) next.Reset();
        return addResult;
    }
    HRESULT RemoveSubscription(IACModifySubscription* subscription) override {
        removed.push_back(subscription);
        return removeResult;
    }

    HRESULT addResult = S_OK, removeResult = S_OK;
    bool oneWatchForAll = false;
    ComponentPtr<CComponentObject<FakeWatch>> next;  // a new one where the test sets none
    std::string asked;
    IACModifyCallback* callback = nullptr;
    std::vector<IACModifySubscription*> watches, removed;
};

class FakeReport : public ComponentRoot, public IACNodeModifyEnum, public IACNodeEnumerator {
public:
    static constexpr const char* Tag = "FakeReport";
    using Queryable = InterfaceList<IACNodeModifyEnum>;

    HRESULT GetNodeEnumerator(IACNodeEnumerator** out) override {
        if (Succeeded(walkResult)) *out = ComponentPtr<IACNodeEnumerator>(this, false).Detach();
        return walkResult;
    }
    HRESULT Reset() override {
        place = 0;
        return E_FAIL;
    }
    HRESULT Next(AcnHandle* node) override {
        return place < nodes.size() ? AcnDuplicateNodeHandle(nodes[place++].Handle(), node) : E_FAIL;
    }

    HRESULT walkResult = S_OK;
    std::vector<ACNode> nodes;
    std::size_t place = SIZE_MAX;  // nothing is found without a Reset
};

// A notification. A null text and a mask of 0 leave their attribute out.
struct Change {
    const WideChar* command = nullptr;
    std::int64_t mask = 1;
    const WideChar* path = u"\\A\\B";
    bool hasChild = true, commandIsNumber = false;

    ACNode Node() const {
        ACNode notification, child;
        notification.Create(nullptr, nullptr);
        if (path != nullptr) notification.SetText(u"ModifiedNodePath", path, MeasureText);
        if (mask != 0) notification.SetInt64(u"ChangesMask", mask);
        child.Create(u"B", nullptr);
        child.SetText(u"Other", u"value", MeasureText);
        if (command != nullptr) child.SetText(u"Command", command, MeasureText);
        if (commandIsNumber) child.SetInt32(u"Command", 1);
        if (hasChild) AcnAppendChild(notification.Handle(), child.Handle());
        return notification;
    }
};

// A manager that finds the service at the broker.
class ForcedCommandsTest : public ManagerTest {
protected:
    ForcedCommandsTest() { Publish(service_.Get()); }
    ~ForcedCommandsTest() override { Publish(nullptr); }

    static void Publish(IACConfigService* service) {
        EXPECT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, service), S_OK);
    }
    SubscriptionPtr SubscribeForced(const ListenerPtr& listener, bool withOptionBit0 = false) {
        const ForcedActionConfig config{u"B", u"A", withOptionBit0};
        SubscriptionPtr subscription;
        EXPECT_EQ(manager_->SubscribeForcedAction(listener.Get(), &config, subscription.Address()), S_OK);
        EXPECT_EQ(subscription->Start(), S_OK);
        return subscription;
    }
    HRESULT Report(const std::vector<Change>& changes, IACModifySubscription* watch) const {
        const auto report = NewObject<FakeReport>();
        for (const Change& change : changes) report->nodes.push_back(change.Node());
        return service_->callback->OnTriggered(watch, 0, report.Get());
    }
    HRESULT Report(const std::vector<Change>& changes) const { return Report(changes, service_->watches.back()); }

    const ComponentPtr<CComponentObject<FakeConfigService>> service_ = NewObject<FakeConfigService>();
};
