#include <deque>
#include <random>

#include "ConfigServer/ConfigServer.h"
#include "LoadedModule.h"
#include "ModuleBroker/Registration.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Client {
    Listener listener;
    SubscriptionPtr subscription;
};

// A module and a configuration service that are connected through the broker. Commands arrive in the order in which
// they are written, so after one is served, all before it have been served, too.
class ForcedCommandTest : public StoreTest {
protected:
    explicit ForcedCommandTest(const std::optional<std::string>& maxSeverity = "NONE") : module_(maxSeverity) {}

    void SetUp() override {
        server_ = ConfigServer::CreateConfigServer();
        ASSERT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, server_.Get()), S_OK);
        manager_ = module_.Create();
    }
    void TearDown() override {
        for (Client& client : clients_) client.subscription.Reset();
        manager_.Reset();
        module_.Unload();
        EXPECT_EQ(MBSetNamedInstance(ConfigServiceInstanceName, nullptr), S_OK);
        server_.Reset();
        for (const Client& client : clients_) EXPECT_TRUE(client.listener.AwaitDetached());
        StoreTest::TearDown();
    }

    void Write(std::size_t point, const WideString& command) const {
        const WideString path = u"\\Commands\\ManagedObjectsDataCollectionCommand\\Parent\\" + LeafName(point);
        EXPECT_EQ(server_->WriteNode(path + u"\\Order", {{u"Command", command}, {u"Comment", u"ignored"}}), S_OK);
    }

    void Subscribe(std::size_t point, Client& client) const {
        const ForcedActionConfig config{LeafName(point), u"Parent", false};
        EXPECT_EQ(manager_->SubscribeForcedAction(&client.listener, &config, client.subscription.Address()), S_OK);
    }
    Client& AddClient(std::size_t point) {
        Subscribe(point, clients_.emplace_back());
        return clients_.back();
    }
    Listener& AddStarted(std::size_t point) {
        Client& client = AddClient(point);
        EXPECT_EQ(client.subscription->Start(), S_OK);
        return client.listener;
    }

    ComponentPtr<ConfigServer::IConfigTree> server_;
    LoadedModule module_;
    ManagerPtr manager_;
    std::deque<Client> clients_;

private:
    static WideString LeafName(std::size_t point) { return WideString(point + 1, u'x'); }
};

TEST_F(ForcedCommandTest, CallsTheListenersOfThePointForTheLastUnservedCommand) {
    const Client& late = AddClient(0);
    const Listener& prompt = AddStarted(1);
    for (const WideChar* const command : {u"Start", u"Stop", u"Start", u"Stop", u"Stop"}) Write(0, command);
    Write(1, u"Start");
    EXPECT_EQ(Configure(manager_, 1), S_OK);
    EXPECT_TRUE(prompt.AwaitCalls(1));
    EXPECT_THAT(late.listener.Names(), IsEmpty());
    EXPECT_EQ(late.subscription->Start(), S_OK);
    EXPECT_TRUE(late.listener.AwaitCalls(1));
    for (const WideChar* const noCommand : {u"start", u"", u"Start "}) Write(0, noCommand);
    Write(1, u"Stop");
    EXPECT_TRUE(prompt.AwaitCalls(2));
    Write(0, u"Start");
    EXPECT_TRUE(late.listener.AwaitCalls(2));
    EXPECT_THAT(late.listener.Names(), ElementsAre("ForcedStop", "ForcedStart"));
    EXPECT_THAT(prompt.Names(), ElementsAre("ForcedStart", "ForcedStop"));
}

// The settings of the log in a file.
class StormSettings {
protected:
    void Set(const char* severity) const {
        WriteAll(directory_ / "new.ini", std::string("[Logger]\nMaxSeverity=") + severity + "\n");
        std::filesystem::rename(directory_ / "new.ini", directory_ / "Storm.ini");
    }

private:
    const TemporaryDirectory directory_;
    const ScopedVariable file_{"GLOBAL_SETTINGS_INI", (directory_ / "Storm.ini").string()};
};

// Several threads write commands for many points while clients register and unsubscribe.
class CommandStorm : protected StormSettings, public ForcedCommandTest {
protected:
    static constexpr std::size_t Points = 24, Writers = 3, Visitors = 2;
    static constexpr int Commands = Sanitized ? 500 : 2000, Visits = Sanitized ? 60 : 200;

    CommandStorm() : ForcedCommandTest(std::nullopt) { Set("WARN"); }

    void SetUp() override {
        ForcedCommandTest::SetUp();
        for (std::size_t point = 0; point <= Points; ++point) AddStarted(point);
        EXPECT_EQ(Configure(manager_, 1), S_OK);
    }

    // Each writer has its own points, so that the last command of each point is known.
    void WriteCommands(std::size_t writer) {
        std::minstd_rand random(static_cast<unsigned>(writer + 1));
        for (int i = 0; i < Commands; ++i) {
            const std::size_t point = writer + Writers * (random() % (Points / Writers));
            const bool start = random() % 2 == 0;
            Write(point, start ? u"Start" : u"Stop");
            last_[point] = start ? "ForcedStart" : "ForcedStop";
        }
    }

    void Visit(std::size_t visitor) {
        std::minstd_rand random(static_cast<unsigned>(visitor + 1));
        std::deque<std::pair<Client, std::size_t>> visits(Visits);
        for (auto& visit : visits) {
            Client& client = visit.first;
            Subscribe(random() % Points, client);
            EXPECT_EQ(client.subscription->Start(), S_OK);
            const bool stays = random() % 8 == 0;
            EXPECT_TRUE(Await([&] { return !stays || writersLeft_ == 0 || !client.listener.Names().empty(); }));
            EXPECT_EQ(client.subscription->Unsubscribe(), S_OK);
            EXPECT_TRUE(client.listener.AwaitDetached());
            visit.second = client.listener.Names().size();
        }
        EXPECT_TRUE(Await([&] { return writersLeft_ == 0; }));
        for (const auto& [client, calls] : visits) EXPECT_EQ(client.listener.Names().size(), calls);
    }

    // At its end each listener has received the last command of its point, and all objects of the round are deleted.
    void Round() {
        writersLeft_ = Writers;
        {
            std::vector<JoiningThread> threads;
            for (std::size_t writer = 0; writer < Writers; ++writer) {
                threads.emplace_back([this, writer] {
                    WriteCommands(writer);
                    --writersLeft_;
                });
            }
            for (std::size_t visitor = 0; visitor < Visitors; ++visitor) {
                threads.emplace_back([this, visitor] { Visit(visitor); });
            }
        }
        // Written after all others, so it is served after them.
        Write(Points, u"Start");
        ASSERT_TRUE(clients_[Points].listener.AwaitCalls(1));
        for (std::size_t point = 0; point <= Points; ++point) {
            const auto names = clients_[point].listener.TakeNames();
            EXPECT_EQ(names.empty() ? "" : names.back(), point < Points ? last_[point] : "ForcedStart") << point;
        }
        // The manager, and for each remaining client a subscription and two actions.
        EXPECT_TRUE(Await([&] { return module_.LiveObjects() == 1 + 3 * clients_.size(); }));
    }

    std::array<std::string, Points> last_;
    std::atomic<std::size_t> writersLeft_{0};
};

TEST_F(CommandStorm, DeliversTheLastCommandOfEachPointAndLeaksNothing) {
    Round();
    for (Client& client : clients_) {
        EXPECT_EQ(client.subscription->Unsubscribe(), S_OK);
        client.subscription.Reset();
    }
    EXPECT_TRUE(Await([&] { return module_.LiveObjects() == 1; }));  // the manager
}

struct Resources {
    std::uint64_t nodeHandles = OpenHandles().first;
    std::size_t openThings = ThisSystem::OpenThings();
    std::size_t memory = ThisSystem::UsedMemory();
};

// Runs for two seconds, or for ORV_STORM_SECONDS.
TEST_F(CommandStorm, KeepsMemoryDescriptorsAndObjectsConstant) {
    const auto seconds = ThisSystem::Variable("ORV_STORM_SECONDS");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds{std::stoi(seconds.value_or("2"))};
    constexpr std::size_t warmUp = 3, fewest = 8;
    std::vector<Resources> rounds;
    while (!HasFailure() && (std::chrono::steady_clock::now() < end || rounds.size() < fewest)) {
        Round();
        // The log is renamed and removed in turn, and its severity is high and low in turn.
        std::error_code missing;
        if (rounds.size() % 2 == 0) {
            std::filesystem::rename(module_.LogFile(), module_.LogFile().string() + ".old", missing);
        } else {
            std::filesystem::remove(module_.LogFile(), missing);
        }
        Set(rounds.size() % 4 < 2 ? "DBG3" : "WARN");
        rounds.emplace_back();
    }
    const Resources &first = rounds[warmUp], &last = rounds.back();
    EXPECT_EQ(last.nodeHandles, first.nodeHandles);
    EXPECT_LE(last.openThings, first.openThings + 1) << "the log may be open";
    // Fragmentation may take some megabytes. The allocators of the sanitizers keep freed memory for a while.
    constexpr std::size_t fragmentation = 4 << 20;
    EXPECT_TRUE(Sanitized || last.memory < first.memory + first.memory / 10 + fragmentation)
        << first.memory << " bytes became " << last.memory;
}

TEST_F(CommandStorm, EndsWithTheManagerWhileCommandsArrive) {
    const JoiningThread writer([this] { WriteCommands(0); });
    EXPECT_TRUE(clients_[0].listener.AwaitCalls(1));
    for (Client& client : clients_) client.subscription.Reset();
    manager_.Reset();
    module_.Unload();
}

}  // namespace
