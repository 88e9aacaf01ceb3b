#include <cinttypes>
#include <cstdio>
#include <map>
#include <regex>
#include <sstream>

#include "ConfigServer/ConfigServer.h"
#include "LoadedModule.h"
#include "ModuleBroker/Registration.h"

namespace {

const std::string Namespace = "DataCollection::ActionManagement::";

// Replaces what differs from run to run by names, and the manager's namespace by "~".
class Normalizer {
public:
    void Name(const void* pointer, const char* name) {
        char digits[17];
        std::snprintf(digits, sizeof(digits), "%016" PRIXPTR, reinterpret_cast<std::uintptr_t>(pointer));
        pointers_.emplace_back(digits, name);
    }
    std::string operator()(std::string text) const {
        static const std::regex elapsed(R"(\[\d{1,3}( \d{3})*\.\d{3} ms\]$)");
        static const std::regex time(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3})");
        static const std::regex handle(R"(\[0x[0-9A-F]{16}\]:)");
        static const std::regex unnamed("'[0-9A-F]{16}'");
        for (const auto& [form, name] : pointers_) text = std::regex_replace(text, form, name);
        text = std::regex_replace(text, elapsed, "[ELAPSED]");
        text = std::regex_replace(text, time, "TIME");
        text = std::regex_replace(text, handle, "[HANDLE]:");
        text = std::regex_replace(text, unnamed, "'OTHER'");
        for (std::size_t at; (at = text.find(Namespace)) != text.npos;) text.replace(at, Namespace.size(), "~");
        return text;
    }

private:
    std::vector<std::pair<std::regex, std::string>> pointers_;
};

// The messages of each thread (severity, indentation and text), in the order in which the threads appear. Only the
// first line of a message is kept. The entry and exit of a method that logs nothing in between become one message.
std::vector<std::string> MessagesByThread(const std::string& log, const Normalizer& normalize) {
    static const std::regex line(R"([-0-9]{10} [:.0-9]{16} \| ([A-Z0-9 ]{4})[^|]*\|([^|]*)\|[^|]*\|(.*)\r)");
    std::vector<std::string> messages;
    std::map<std::string, std::size_t> threads;
    std::istringstream lines(log);
    std::string text;
    while (std::getline(lines, text)) {
        std::smatch fields;
        if (!std::regex_match(text, fields, line)) continue;
        const std::string message = fields.str(1) + normalize(fields.str(3)) + "\n";
        const std::size_t thread = threads.emplace(fields[2], threads.size()).first->second;
        messages.resize(threads.size());
        std::string& before = messages[thread];
        // The entry that belongs to this exit.
        std::string entry = message;
        if (const std::size_t at = message.find("Exiting: "); at != message.npos && message.ends_with(" [ELAPSED]\n")) {
            entry.replace(at, 7, "Entering").erase(entry.rfind(" [ELAPSED]"), 10);
        }
        if (entry != message && before.ends_with(entry)) {
            before.insert(before.rfind("Entering: ") + 8, " and exiting");
        } else {
            before += message;
        }
    }
    return messages;
}

// The number of cycles with nothing to do depends on time: several in a row become one.
void MergeEmptyCycles(std::string& messages) {
    static const std::string cycle = R"(DBG2   Entering: ~ActionManager::OnTimerEvent
DBG2     Entering and exiting: ~ActionManager::UpdateSubscriptions
DBG2     Entering and exiting: ~ActionManager::EraseDisposedActions
DBG2     Entering and exiting: ~ActionManager::UpdateRegularActions
DBG2     Entering: ~ActionManager::UpdateForcedActions
DBG2       Entering and exiting: ~ConfigurationUpdateQueue::Peek
DBG2     Exiting: ~ActionManager::UpdateForcedActions [ELAPSED]
DBG2   Exiting: ~ActionManager::OnTimerEvent [ELAPSED]
)";
    for (std::size_t at; (at = messages.find(cycle + cycle)) != cycle.npos;) messages.erase(at, cycle.size());
}

// The scenario's file contains the messages of each thread, in the same order, after a heading "== name".
std::vector<std::string> Expected(const std::string& scenario) {
    std::ifstream file(ORV_LOG_SCENARIOS "/" + scenario + ".txt");
    std::vector<std::string> messages;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("== ")) {
            messages.emplace_back();
        } else {
            messages.back() += line + "\n";
        }
    }
    return messages;
}

class LogScenario : public StoreTest {
protected:
    void AwaitCycles(const LoadedModule& module) {
        const std::string cycleEnd = "Exiting: " + Namespace + "ActionManager::OnTimerEvent ";
        EXPECT_TRUE(Await([&] { return CountOf(cycleEnd, module.Log()) >= 3; }));
    }
    void ExpectMessages(const LoadedModule& module, const std::string& scenario) {
        auto messages = MessagesByThread(module.Log(), normalize_);
        const auto expected = Expected(scenario);
        ASSERT_EQ(messages.size(), expected.size());
        MergeEmptyCycles(messages.back());
        for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(messages[i], expected[i]);
    }
    // The listener's first call names its action and ends its subscription.
    void UnsubscribeWhenCalled(const char* nameOfAction) {
        listener_.onCall = [=, this](IActionSubscription& subscription, IAction& action) {
            normalize_.Name(QueryOrThrow<IActionControl>(ComponentPtr(&action)).Get(), nameOfAction);
            EXPECT_EQ(subscription.Unsubscribe(), S_OK);
        };
    }
    void Name(const SubscriptionPtr& subscription) {
        normalize_.Name(subscription.Get(), "SUBSCRIPTION");
        normalize_.Name(QueryOrThrow<IActionSubscriptionControl>(subscription).Get(), "CONTROL");
    }

    Normalizer normalize_;
    Listener listener_;
};

// In the first cycle the action is due and its listener unsubscribes. The second cycle removes both.
TEST_F(LogScenario, OfARegularActionHasEveryMessageInOrder) {
    LoadedModule module("DBG3");
    UnsubscribeWhenCalled("ACTION");
    auto manager = module.Create();
    auto subscription = Subscribe(manager, listener_, Every(1));
    Name(subscription);
    EXPECT_EQ(subscription->Start(), S_OK);
    EXPECT_EQ(Configure(manager, 10), S_OK);
    AwaitCycles(module);
    subscription.Reset();
    manager.Reset();
    module.Unload();
    ExpectMessages(module, "RegularAction");
}

// One command is served and one is rejected. Both contain a secret, which must be hidden.
TEST_F(LogScenario, OfAForcedActionHasEveryMessageInOrderAndNoSecret) {
    const ScopedVariable hidden("GS_Logger_HiddenNodeTypeAttrs", "*:Secret");
    const auto server = ConfigServer::CreateConfigServer();
    ASSERT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, server.Get()), S_OK);
    LoadedModule module("DBG3");
    UnsubscribeWhenCalled("START");
    auto manager = module.Create();
    const ForcedActionConfig config{u"Leaf", u"Parent", false};
    SubscriptionPtr subscription;
    EXPECT_EQ(manager->SubscribeForcedAction(&listener_, &config, subscription.Address()), S_OK);
    Name(subscription);
    EXPECT_EQ(subscription->Start(), S_OK);
    for (const WideChar* const command : {u"Start", u"start"}) {
        EXPECT_EQ(server->WriteNode(u"\\Commands\\ManagedObjectsDataCollectionCommand\\Parent\\Leaf\\Order",
                                    {{u"Command", command}, {u"Secret", u"xyzzy"}}),
                  S_OK);
    }
    const std::string reportEnd = "Exiting: " + Namespace + "ActionManager::OnTriggered ";
    EXPECT_TRUE(Await([&] { return CountOf(reportEnd, module.Log()) == 2; }));
    EXPECT_EQ(Configure(manager, 10), S_OK);
    AwaitCycles(module);
    subscription.Reset();
    manager.Reset();
    module.Unload();
    EXPECT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, nullptr), S_OK);
    ExpectMessages(module, "ForcedAction");
    EXPECT_EQ(CountOf("xyzzy", module.Log()), 0u);
    EXPECT_EQ(CountOf("\"********\"", module.Log()), 1u);
}

}  // namespace
