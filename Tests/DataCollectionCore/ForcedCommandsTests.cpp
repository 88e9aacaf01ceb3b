#include <utility>

#include "Common/Base/HRes.h"
#include "Common/Nodes/NodeDump.h"
#include "FakeService.h"
#include "ModuleBroker/Registration.h"
#include "Support/JoiningThread.h"
#include "Support/NextDefinition.h"

// The code that the next reading of an attribute returns instead of the store's.
static HRESULT RefusalOfAttribute = S_OK;

HRESULT AcnGetAttribute(AcnHandle node, const WideChar* name, const std::uint16_t* type, void* buffer,
                        std::uint32_t* size, std::uint16_t* outType) {
    static const auto next = NextDefinitionOf(&AcnGetAttribute, __func__);
    if (Failed(RefusalOfAttribute)) return std::exchange(RefusalOfAttribute, S_OK);
    return next(node, name, type, buffer, size, outType);
}

namespace {

// A notification. A null text or a mask of 0 means that the attribute is missing.
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

class ForcedCommands : public ManagerTest {
protected:
    ForcedCommands() { Publish(&service_); }
    ~ForcedCommands() override {
        Publish(nullptr);
        manager_.Reset();
        for (const FakeWatch& watch : service_.watches) EXPECT_EQ(watch.references, 0u);
    }

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
    HRESULT Report(const std::vector<Change>& changes) {
        service_.nodes.clear();
        for (const Change& change : changes) service_.nodes.push_back(change.Node());
        return service_.Report();
    }

    FakeService service_;
};

}  // namespace

TEST_F(ForcedCommands, RegisterAWatchWithExactFilterAndParameters) {
    const std::string wanted = R"(*<node name="" type="FilterByPath">
    <attribute name="NodePath" type="text" value="\Commands\ManagedObjectsDataCollectionCommand\A\B"/>
    <attribute name="IsParent" type="bool" value="false"/>
    <attribute name="MaxDepth" type="int64" value="2147483647"/>
  </node>*<node name="SubscribeConfig" type="">
    <attribute name="ChangesMask" type="int32" value="31"/>
    <attribute name="SubscribeOptions" type="int32" value=)";
    for (const bool withOptionBit0 : {false, true}) {
        CapturedLog log("DBG");
        std::string asked;
        service_.onAdd = [&](AcnHandle filter, AcnHandle parameters) {
            asked = Narrow(DumpNode({ACNode::Borrow(filter), DumpDepth::WholeTree}) +
                           DumpNode({ACNode::Borrow(parameters), DumpDepth::WholeTree}));
        };
        const SubscriptionPtr subscription = SubscribeForced(listener_, withOptionBit0);
        EXPECT_TRUE(IsLike(asked, wanted + (withOptionBit0 ? "\"7\"*" : "\"6\"*"))) << asked;
        const std::string watch = "IACModifySubscription: '" + Shown(&service_.Latest()) + "' .";
        EXPECT_TRUE(log.Wrote({"DBG Create forced action. " + watch, "DBG Forced start action created: '*'.",
                               "DBG Forced stop action created: '*'.", "DBG *. Attached action '*'",
                               "DBG *. Attached action '*'", "DBG * created. *", "DBG Started forced action " + watch,
                               "DBG *starting."}));
    }
    EXPECT_EQ(service_.references, 1u) << "the service must not be kept";
}

TEST_F(ForcedCommands, TriggerTheActionOfTheLastValidCommand) {
    const std::string failed = "ERR DataCollection::ActionManagement::ActionManager::OnTriggered failed: ";
    const std::string empty = "WARN Empty attribute: 'Command'.", bad = "ERR Invalid forced command format: ACNode[";
    const auto lacks = [](const std::string& name) {
        return "ERR Invalid modification. Attribute: '" + name + "'. Reason: 0x80070490 *";
    };
    const auto unknown = [](const std::string& command) { return "WARN Unknown command: '" + command + "'."; };
    const struct {
        std::vector<Change> changes;
        Texts calls, lines;
        HRESULT code = S_OK;
    } table[] = {
        {{}, {}, {}},
        {{{u"Start"}}, {"ForcedStart"}, {}},
        {{{u"Start"}, {u"Start"}}, {"ForcedStart"}, {}},
        {{{u"Start"}, {u"Stop"}}, {"ForcedStop"}, {}},
        {{{u"Stop"}, {u"Start"}}, {"ForcedStart"}, {}},
        {{{u"start"}}, {}, {unknown("start"), bad + "0x*value*"}},
        {{{u""}}, {}, {unknown(""), bad + "*"}},
        {{{u"Start"}, {nullptr}, {u"Stop "}}, {"ForcedStart"}, {empty, bad + "*", unknown("Stop "), bad + "*"}},
        {{{u"x"}, {u"Start"}, {u"y"}, {u"Stop"}}, {"ForcedStop"}, {unknown("x"), bad + "*", unknown("y"), bad + "*"}},
        {{{u"Start", 0x7FFFFFFF00000000}}, {"ForcedStart"}, {}},
        {{{u"Stop", 1, u"", false}, {u"Start"}}, {"ForcedStart"}, {empty, bad + "<null>]"}},
        {{{u"Start"}, {u"Stop", 0}, {u"Stop"}},
         {"ForcedStart"},
         {lacks("ChangesMask"), failed + "0x80070490 *"},
         NOT_FOUND},
        {{{u"Stop"}, {u"Start", 1, nullptr}, {u"Start"}},
         {"ForcedStop"},
         {lacks("ModifiedNodePath"), failed + "0x80070490 *"},
         NOT_FOUND},
        {{{nullptr, 1, u"", true, true}, {u"Stop"}}, {}, {failed + "0x8007065D *"}, DATATYPE_MISMATCH},
    };
    const SubscriptionPtr subscription = SubscribeForced(listener_);
    CapturedLog log("WARN");
    for (const auto& row : table) {
        EXPECT_EQ(Report(row.changes), row.code);
        Cycle();
        EXPECT_TRUE(log.Wrote(row.lines));
        EXPECT_EQ(listener_->TakeCalls(), row.calls);
    }
    EXPECT_EQ(Report({{u"Start"}}), S_OK);
    service_.nodes[0].GetChild(u"B").SetText(u"Command", u"Stop", MeasureText);
    Cycle();
    EXPECT_EQ(listener_->TakeCalls(), Texts{"ForcedStart"}) << "a change after the report must not change the command";
    EXPECT_EQ(service_.callback->OnTriggered(&service_.Latest(), 0, nullptr), E_POINTER);
    service_.walkResult = E_ABORT;
    EXPECT_EQ(service_.Report(), E_ABORT);
}

TEST_F(ForcedCommands, AreDroppedForAnUnknownOrEndedWatch) {
    const SubscriptionPtr subscription = SubscribeForced(listener_);
    FakeWatch stranger;
    CapturedLog log("WARN");
    service_.nodes = {Change{u"Start"}.Node()};
    EXPECT_EQ(service_.Report(&stranger), S_OK);
    subscription->Unsubscribe();
    Cycle();
    EXPECT_TRUE(log.Wrote({"ERR Received unknown IACModifySubscription: '*'."}));
    EXPECT_TRUE(service_.removed.empty());
    EXPECT_EQ(Report({{u"Start"}}), S_OK);
    // While the command waits, a new watch gets the address of the one that has ended.
    SubscriptionPtr next;
    bool isRegistered = false;
    service_.oneWatchForAll = true;
    service_.removeResult = E_ABORT;
    service_.Latest().onEnd = [&] {
        if (!std::exchange(isRegistered, true)) next = SubscribeForced(listener_);
    };
    Cycle();
    EXPECT_TRUE(next);
    EXPECT_TRUE(log.Wrote({"ERR query->*", "WARN Cannot remove*",
                           "ERR Received unknown IACModifySubscription: '" + Shown(&service_.Latest()) + "'."}));
    EXPECT_EQ(service_.removed, std::vector<IACModifySubscription*>{&service_.Latest()});
    EXPECT_EQ(listener_->TakeCalls(), Texts{}) << "a command for the ended watch must not reach the new one";
    EXPECT_EQ(Report({{u"Stop"}}), S_OK);
    Cycle();
    EXPECT_EQ(listener_->TakeCalls(), Texts{"ForcedStop"});
    service_.Latest().onEnd = [] {};
}

// A service may wait in the end of a watch, or in its own last Release, for a thread that registers.
TEST_F(ForcedCommands, ReleaseTheServicesObjectsOutsideTheRegistryLock) {
    int ends = 0;
    const auto registerOnAnotherThread = [&] {
        ++ends;
        JoiningThread([&] { Subscribe(listener_)->Unsubscribe(); }).Join();
    };
    service_.onRemove = [] { Publish(nullptr); };  // the manager then has the last reference
    const SubscriptionPtr subscription = SubscribeForced(listener_);
    service_.onEnd = registerOnAnotherThread;
    service_.Latest().onEnd = registerOnAnotherThread;
    subscription->Unsubscribe();
    for (int cycle = 0; cycle < 4; ++cycle) Cycle();
    EXPECT_EQ(ends, 2);
    service_.Latest().onEnd = service_.onEnd = [] {};
}

TEST_F(ForcedCommands, AreServedAfterOneThatCannotBeRead) {
    const SubscriptionPtr first = SubscribeForced(listener_);
    EXPECT_EQ(Report({{u"Start"}}), S_OK);
    EXPECT_EQ(Report({{u"Stop"}}), S_OK);
    CapturedLog log("ERR");
    RefusalOfAttribute = E_ABORT;
    Cycle();
    EXPECT_TRUE(
        log.Wrote({"ERR DataCollection::ActionManagement::ActionManager::TriggerForcedAction failed: 0x80004004 *"}));
    EXPECT_EQ(listener_->TakeCalls(), Texts{"ForcedStop"});
}

TEST_F(ForcedCommands, RemoveEndedPairsEvenIfTheServiceFails) {
    const std::string call = "ERR query->RemoveSubscription(it->first)\tcall failed. 0x80004004 *; ";
    const std::string pair =
        "WARN Cannot remove subscription: Forced Actions: StartAction '*', StopAction '*'; error: ";
    service_.removeResult = E_ABORT;
    for (const bool there : {true, false}) {
        const SubscriptionPtr subscriptions[] = {SubscribeForced(listener_), SubscribeForced(listener_)};
        for (const auto& subscription : subscriptions) subscription->Unsubscribe();
        Publish(there ? &service_ : nullptr);
        Cycle();
        const std::uint32_t before = LivingObjects();
        CapturedLog log("WARN");
        Cycle();
        EXPECT_EQ(LivingObjects(), before - 4) << "the two actions of each pair";
        const std::string refused = pair + "0x80004004 *", missing = pair + "0x80070490 *";
        EXPECT_TRUE(log.Wrote(there ? Texts{call, refused, call, refused} : Texts{missing, missing}));
        Cycle();
        EXPECT_TRUE(log.Wrote({})) << "the removal must not be repeated";
    }
}

TEST_F(ForcedCommands, MayArriveUntilTheManagerHasReleasedTheirWatch) {
    const SubscriptionPtr subscription = SubscribeForced(listener_);
    const std::uint32_t objects = LivingObjects();
    int ends = 0;
    service_.Latest().onEnd = [&] {
        ++ends;
        EXPECT_EQ(LivingObjects(), objects) << "the manager must still be whole";
        EXPECT_EQ(Report({{u"Start"}}), S_OK);
    };
    manager_.Reset();
    EXPECT_EQ(ends, 1);
}

TEST_F(ForcedCommands, ReachTheFirstOfTwoPairsThatShareAWatch) {
    service_.oneWatchForAll = true;
    const ListenerPtr other = NewObject<RecordingListener>();
    const SubscriptionPtr first = SubscribeForced(listener_), second = SubscribeForced(other);
    EXPECT_EQ(Report({{u"Stop"}}), S_OK);
    Cycle();
    EXPECT_EQ(listener_->TakeCalls(), Texts{"ForcedStop"});
    EXPECT_EQ(other->TakeCalls(), Texts{});
}

TEST_F(ForcedCommands, LeaveNothingWhenTheirRegistrationFails) {
    const ForcedActionConfig config{u"B", u"A", false};
    const std::uint32_t before = LivingObjects();
    auto* const untouched = reinterpret_cast<IActionSubscription*>(0x10);
    IActionSubscription* subscription = untouched;
    EXPECT_EQ(manager_->SubscribeForcedAction(listener_.Get(), &config, nullptr), E_POINTER);
    EXPECT_EQ(manager_->SubscribeForcedAction(nullptr, &config, &subscription), E_POINTER);
    service_.addResult = E_ABORT;
    EXPECT_EQ(manager_->SubscribeForcedAction(listener_.Get(), &config, &subscription), E_ABORT);
    EXPECT_EQ(subscription, untouched);
    EXPECT_EQ(LivingObjects(), before);
}
