#include <cinttypes>
#include <cstdio>
#include <map>
#include <sstream>

#include "LoadedModule.h"

namespace {

// Whether the text has the form at that place: "#" stands for a digit, "X" for an upper-case hexadecimal one.
bool HasForm(std::string_view text, std::size_t at, std::string_view form) {
    if (text.size() - at < form.size()) return false;
    return std::equal(form.begin(), form.end(), text.begin() + static_cast<std::ptrdiff_t>(at), [](char f, char c) {
        const bool isDigit = c >= '0' && c <= '9';
        return f == '#' ? isDigit : f == 'X' ? isDigit || (c >= 'A' && c <= 'F') : f == c;
    });
}

// Gives names to what differs from run to run.
class Normalizer {
public:
    void Name(const void* pointer, const char* name) {
        char digits[17];
        std::snprintf(digits, sizeof(digits), "%016" PRIXPTR, reinterpret_cast<std::uintptr_t>(pointer));
        forms_[digits] = name;
    }
    std::string operator()(std::string text) const {
        for (const auto& [form, name] : forms_) {
            for (std::size_t at = 0; at < text.size(); ++at) {
                if (HasForm(text, at, form)) text.replace(at, form.size(), name);
            }
        }
        return text;
    }

private:
    std::map<std::string, std::string> forms_{
        {" [#.### ms]", " [ELAPSED]"},     {" [##.### ms]", " [ELAPSED]"},      {" [###.### ms]", " [ELAPSED]"},
        {" [# ###.### ms]", " [ELAPSED]"}, {"####-##-## ##:##:##.###", "TIME"}, {"[0xXXXXXXXXXXXXXXXX]:", "[HANDLE]:"}};
};

// The messages of each thread, in the order in which the threads appear: severity, indentation and words. Of a message
// of several lines the first stands; entry and exit of a method that logs nothing in between are one.
std::vector<std::string> MessagesByThread(const std::string& log, const Normalizer& normalize) {
    std::vector<std::string> messages;
    std::map<std::string, std::size_t> threads;
    std::istringstream lines(log);
    std::string line, severity, ids, text;
    while (std::getline(lines, line, '\n')) {
        if (!HasForm(line, 0, "####-##-## ##:##:##.####### | ") || !line.ends_with('\r')) continue;
        std::istringstream fields(line.substr(30, line.size() - 31));
        std::getline(std::getline(std::getline(fields, severity, '|'), ids, '|').ignore(40, '|'), text);
        text = severity.substr(0, 4) + normalize(text) + "\n";
        const std::size_t thread = threads.emplace(ids, threads.size()).first->second;
        messages.resize(threads.size());
        std::string& before = messages[thread];
        // The entry that this exit would follow.
        std::string entry = text;
        if (const std::size_t at = text.find("Exiting: "); at != text.npos && text.ends_with(" [ELAPSED]\n")) {
            entry.replace(at, 7, "Entering").erase(entry.rfind(" [ELAPSED]"), 10);
        }
        if (entry != text && before.ends_with(entry)) {
            before.insert(before.rfind("Entering: ") + 8, " and exiting");
        } else {
            before += text;
        }
    }
    return messages;
}

const std::string Namespace = "DataCollection::ActionManagement::";

// In these tables "~" stands for the namespace of the manager.
constexpr char OfTheClient[] =
    R"(DBG  Entering: ~ActionManager::SubscribeRegularAction
DBG    Entering: ~TimedAction::TimedAction
DBG      Regular action:[Repeat; Start = 0(sec); IsLocalTime = 0; Interval = 0(sec) 1 (ms)] action created: 'ACTION'.
DBG      Action creation time: TIME
DBG      Action First Run Time: TIME
DBG      Entering and exiting: DataCollection::ActionImpl::SetNameAndType
DBG    Exiting: ~TimedAction::TimedAction [ELAPSED]
DBG    Entering: ~ActionManager::CreateSubscription
DBG      Entering and exiting: ~ActionSubscription::SetListener
DBG      Entering: ~ActionSubscription::SetAction
DBG        Entering and exiting: DataCollection::ActionImpl::OnSubscriptionAttached
DBG        Subscription 'SUBSCRIPTION' Subscription ID 'CONTROL'. Attached action 'ACTION'
DBG      Exiting: ~ActionSubscription::SetAction [ELAPSED]
DBG      Subscription 'SUBSCRIPTION' created. Subscription ID: 'CONTROL'.
DBG    Exiting: ~ActionManager::CreateSubscription [ELAPSED]
DBG  Exiting: ~ActionManager::SubscribeRegularAction [ELAPSED]
DBG  Entering: ~ActionSubscription::Start
DBG    Subscription 'SUBSCRIPTION' Subscription ID 'CONTROL'. starting.
DBG  Exiting: ~ActionSubscription::Start [ELAPSED]
DBG  Entering: ~ActionManager::Configure
DBG    ActionManager configuration: ACNode[HANDLE]:
DBG    Entering and exiting: ~GlobalSettings::Load
DBG    Entering and exiting: ~ActionManager::Initialize
DBG  Exiting: ~ActionManager::Configure [ELAPSED]
DBG  Subscription 'SUBSCRIPTION' Subscription ID 'CONTROL' is deleted.
DBG  Entering: ~ActionManager::FinalRelease
DBG    Entering and exiting: ~ActionManager::Stop
DBG  Exiting: ~ActionManager::FinalRelease [ELAPSED]
)";

// The cycle that delivers, and in which the listener unsubscribes; the one that drops what is dead; empty ones.
constexpr char OfTheWorker[] =
    R"(DBG  Entering: ~ActionManager::Start
DBG3   Entering and exiting: ~GlobalSettings::PollingIntervalInMilliseconds
DBG2   Entering: ~ActionManager::OnTimerEvent
DBG2     Entering: ~ActionManager::UpdateSubscriptions
DBG2       Entering and exiting: ~ActionSubscription::IsAlive
DBG2     Exiting: ~ActionManager::UpdateSubscriptions [ELAPSED]
DBG2     Entering: ~ActionManager::EraseDisposedActions
DBG2       Entering and exiting: DataCollection::ActionImpl::IsDisposed
DBG2     Exiting: ~ActionManager::EraseDisposedActions [ELAPSED]
DBG2     Entering: ~ActionManager::UpdateRegularActions
DBG2       Entering: ~TimedAction::ShouldBeTriggered
DBG2         Action: 'ACTION'.
DBG2         Checked time: TIME
DBG2         Action: 'ACTION'.
DBG2         IntervalStart: TIME
DBG2       Exiting: ~TimedAction::ShouldBeTriggered [ELAPSED]
DBG        Entering: ~TimedAction::SetTriggeredTime
DBG          Action: 'ACTION'.
DBG          Triggered time set: TIME
DBG        Exiting: ~TimedAction::SetTriggeredTime [ELAPSED]
DBG        Entering and exiting: DataCollection::ActionImpl::SetTriggered
DBG2     Exiting: ~ActionManager::UpdateRegularActions [ELAPSED]
DBG2     Entering: ~ActionManager::UpdateForcedActions
DBG2       Entering and exiting: ~ConfigurationUpdateQueue::Peek
DBG2     Exiting: ~ActionManager::UpdateForcedActions [ELAPSED]
DBG2     Entering: ~ActionSubscription::TriggerActionsIfNeeded
DBG2       Entering and exiting: DataCollection::ActionImpl::GetTriggered
DBG        Subscription 'SUBSCRIPTION' Subscription ID 'CONTROL'. Attached action 'ACTION' becomes triggered.
DBG        Entering and exiting: DataCollection::ActionImpl::GetName
DBG        Entering: ~ActionSubscription::Unsubscribe
DBG          Subscription 'SUBSCRIPTION' Subscription ID 'CONTROL'. will be unsubscribed.
DBG        Exiting: ~ActionSubscription::Unsubscribe [ELAPSED]
DBG        Entering and exiting: DataCollection::ActionImpl::SetTriggered
DBG        Entering: ~ActionSubscription::UnsubscribeInternal
DBG          Subscription 'SUBSCRIPTION' Subscription ID 'CONTROL'. unsubscribed.
DBG2         Action 'ACTION' OnSubscriptionDisposed
DBG          Entering and exiting: DataCollection::ActionImpl::OnSubscriptionDisposed
DBG        Exiting: ~ActionSubscription::UnsubscribeInternal [ELAPSED]
DBG2     Exiting: ~ActionSubscription::TriggerActionsIfNeeded [ELAPSED]
DBG2   Exiting: ~ActionManager::OnTimerEvent [ELAPSED]
DBG2   Entering: ~ActionManager::OnTimerEvent
DBG2     Entering: ~ActionManager::UpdateSubscriptions
DBG2       Entering and exiting: ~ActionSubscription::IsAlive
DBG        Subscription ID:'CONTROL' deleting...
DBG2     Exiting: ~ActionManager::UpdateSubscriptions [ELAPSED]
DBG2     Entering: ~ActionManager::EraseDisposedActions
DBG2       Entering and exiting: DataCollection::ActionImpl::IsDisposed
DBG        TimedAction 'ACTION' is disposed and will be deleted
DBG2     Exiting: ~ActionManager::EraseDisposedActions [ELAPSED]
DBG2     Entering and exiting: ~ActionManager::UpdateRegularActions
DBG2     Entering: ~ActionManager::UpdateForcedActions
DBG2       Entering and exiting: ~ConfigurationUpdateQueue::Peek
DBG2     Exiting: ~ActionManager::UpdateForcedActions [ELAPSED]
DBG2   Exiting: ~ActionManager::OnTimerEvent [ELAPSED]
)";
constexpr char OfAnEmptyCycle[] =
    R"(DBG2   Entering: ~ActionManager::OnTimerEvent
DBG2     Entering and exiting: ~ActionManager::UpdateSubscriptions
DBG2     Entering and exiting: ~ActionManager::EraseDisposedActions
DBG2     Entering and exiting: ~ActionManager::UpdateRegularActions
DBG2     Entering: ~ActionManager::UpdateForcedActions
DBG2       Entering and exiting: ~ConfigurationUpdateQueue::Peek
DBG2     Exiting: ~ActionManager::UpdateForcedActions [ELAPSED]
DBG2   Exiting: ~ActionManager::OnTimerEvent [ELAPSED]
)";
constexpr char OfTheWorkersEnd[] = "DBG  Exiting: ~ActionManager::Start [ELAPSED]\n";

std::string Expected(std::string table) {
    for (std::size_t at; (at = table.find('~')) != table.npos;) table.replace(at, 1, Namespace);
    return table;
}

class LogScenario : public StoreTest {};

TEST_F(LogScenario, OfARegularActionHasEveryMessageInItsPlace) {
    LoadedModule module("DBG3");
    Normalizer normalize;
    Listener listener;
    listener.onCall = [&](IActionSubscription& subscription, IAction& action) {
        normalize.Name(ComponentPtr<IAction>(&action, false).QueryOrThrow<IActionControl>().Get(), "ACTION");
        EXPECT_EQ(subscription.Unsubscribe(), S_OK);
    };
    auto manager = module.Create();
    auto subscription = Subscribe(manager, listener, Every(1));
    normalize.Name(subscription.Get(), "SUBSCRIPTION");
    normalize.Name(subscription.QueryOrThrow<IActionSubscriptionControl>().Get(), "CONTROL");
    EXPECT_EQ(subscription->Start(), S_OK);
    // By the first cycle the action is due.
    EXPECT_EQ(Configure(manager, 10), S_OK);
    const std::string cycleEnd = "Exiting: " + Namespace + "ActionManager::OnTimerEvent ";
    EXPECT_TRUE(Await([&] { return CountOf(cycleEnd, module.Log()) >= 3; }));
    subscription.Reset();
    manager.Reset();
    module.Unload();

    auto messages = MessagesByThread(module.Log(), normalize);
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0], Expected(OfTheClient));
    // How many empty cycles there are is left to time.
    const std::string cycle = Expected(OfAnEmptyCycle);
    for (std::size_t at; (at = messages[1].find(cycle + cycle)) != cycle.npos;) messages[1].erase(at, cycle.size());
    EXPECT_EQ(messages[1], Expected(OfTheWorker) + cycle + Expected(OfTheWorkersEnd));
}

}  // namespace
