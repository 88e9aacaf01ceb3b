// The host at work, with the real module on the real clock.
#include <signal.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "ChildProcess.h"

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr char NothingAlive[] = "alive: 0 objects of the module, 0 of the host, 0 open node handles";

std::vector<json> Parse(const std::vector<std::string>& lines) {
    std::vector<json> objects;
    for (const std::string& line : lines) objects.push_back(json::parse(line));
    return objects;
}

TEST(Host, ShowsTheCallsOfEverySchedule) {
    ChildProcess host(
        {"--polling", "5", "--every", "20ms", "--every", "1s", "--at", "+1s,1s", "--at", "+1s", "--local"});
    for (const char* registration : {"every 1s ", "at +1s,1s local ", "at +1s local ", "every 20ms "}) {
        EXPECT_THAT(host.ReadUntil(registration).back(),
                    AllOf(HasSubstr(registration), HasSubstr("Schedule"), HasSubstr(" ms")));
    }
    host.Type("quit\n");
    const auto result = host.Finish();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.lines.back(), NothingAlive);
}

TEST(Host, CountsLatenessFromTheDueMomentOfTheSchedule) {
    ChildProcess host({"--polling", "5", "--at", "+1s,1s", "--json"});
    const auto call = json::parse(host.ReadUntil("\"call\"").back());
    const std::string time = call["time"];  // 2024-03-05T07:08:09.012+02:00
    const int shown = std::stoi(time.substr(20, 3));
    const double lateness = call["latenessMs"];
    EXPECT_GE(lateness, 0);
    EXPECT_NEAR(std::fmod(lateness, 1000), shown, 1) << "the due moment is a full second";
    EXPECT_EQ(call["registration"], "at +1s,1s");
    EXPECT_EQ(call["action"], "Schedule");
}

TEST(Host, HandsCommandsToTheListenersOfTheirPointAlone) {
    ChildProcess host({"--polling", "5", "--watch", "Plant/Line1", "--watch", "Plant/Line2", "--bit0"});
    host.Type("start Plant Line1\n");
    EXPECT_THAT(host.ReadUntil("Forced").back(),
                AllOf(HasSubstr("watch Plant/Line1"), HasSubstr("ForcedStart"), HasSubstr(" ms")));
    host.Type("stop Plant Line2\n");
    EXPECT_THAT(host.ReadUntil("Forced").back(), AllOf(HasSubstr("watch Plant/Line2"), HasSubstr("ForcedStop")));
    host.Type("write \\Commands\\ManagedObjectsDataCollectionCommand\\Plant\\Line1 Command=Stop Who=me\n");
    EXPECT_THAT(host.ReadUntil("Forced").back(), AllOf(HasSubstr("watch Plant/Line1"), HasSubstr("ForcedStop")));
    host.Type("quit");
    EXPECT_EQ(host.Finish().code, 0);
}

TEST(Host, TellsItsStateWhenAsked) {
    ChildProcess host({"--every", "1h", "--watch", "A/B", "--json"});
    host.Type("status\nalive\n\nnonsense\nstart A\nhelp\nquit\n");
    const auto result = host.Finish();
    const auto objects = Parse(result.lines);
    ASSERT_EQ(objects.size(), 6u);
    EXPECT_EQ(objects[0]["registration"], "every 1h");
    EXPECT_THAT(objects[0]["nextDue"].get<std::string>(), StartsWith("20"));
    EXPECT_EQ(objects[1]["nextDue"], json());
    // The manager, two subscriptions, the schedule's action and the pair of forced ones.
    EXPECT_EQ(objects[2]["moduleObjects"], 6);
    EXPECT_EQ(objects[2]["byClass"], (json{{"ActionImpl", 3}, {"ActionManager", 1}, {"ActionSubscription", 2}}));
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("\"nonsense\""), HasSubstr("start PARENT LEAF"), HasSubstr("end the host")));
    EXPECT_EQ(objects[5], (json{{"event", "alive"},
                                {"moduleObjects", 0},
                                {"byClass", json::object()},
                                {"hostObjects", 0},
                                {"nodeHandles", 0}}));
    EXPECT_EQ(result.code, 0);
}

TEST(Host, SumsUpEachRegistration) {
    ChildProcess host({"--polling", "5", "--every", "20ms", "--every", "1h", "--json"});
    auto lines = host.ReadUntil("call");
    host.Type("quit\n");
    const auto result = host.Finish();
    lines.insert(lines.end(), result.lines.begin(), result.lines.end());
    const auto objects = Parse(lines);
    const auto calls = std::ranges::count(objects, json("call"), [](const json& object) { return object["event"]; });
    const auto summary = objects.end() - 3;
    EXPECT_EQ(summary[0]["event"], "summary");
    EXPECT_EQ(summary[0]["calls"], calls);
    const json& lateness = summary[0]["latenessMs"];
    EXPECT_LE(lateness["min"], lateness["median"]);
    EXPECT_LE(lateness["median"], lateness["max"]);
    EXPECT_EQ(summary[1],
              (json{{"event", "summary"}, {"registration", "every 1h"}, {"calls", 0}, {"latenessMs", nullptr}}));
}

class StoppedHost : public testing::TestWithParam<int> {};

TEST_P(StoppedHost, EndsCleanlyWhateverThePollingInterval) {
    for (const char* polling : {"0", "20", "4294967295"}) {
        ChildProcess host({"--polling", polling, "--every", "1h", "--watch", "A/B"});
        host.Type("alive\n");
        host.ReadUntil("alive");
        host.Signal(GetParam());
        const auto result = host.Finish();
        EXPECT_EQ(result.code, 0) << polling;
        EXPECT_THAT(result.lines, Contains(StartsWith("every 1h")));
        EXPECT_EQ(result.lines.back(), NothingAlive);
    }
}
INSTANTIATE_TEST_SUITE_P(Signals, StoppedHost, testing::Values(SIGINT, SIGTERM));

TEST(Host, EndsWhenNobodyReadsItsOutputAnyMore) {
    ChildProcess host({"--polling", "5", "--every", "20ms"});
    host.ReadUntil("every 20ms");
    host.CloseOutput();
    EXPECT_EQ(host.Finish().code, 1);
}

TEST(Host, ShowsTheModulesAnswerToAScheduleThatItRefuses) {
    const std::vector<std::vector<std::string>> refused{
        {"--every", "0s"}, {"--at", "00:00:00,7s"}, {"--every", "1s", "--every", "4294968s"}};
    for (const auto& arguments : refused) {
        const auto result = RunHost(arguments);
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.errors,
                    AllOf(HasSubstr("0x80070057 The parameter is incorrect"), HasSubstr(arguments.back())));
        EXPECT_THAT(result.lines, testing::IsEmpty());
    }
}

TEST(Host, SaysWhyAModuleCannotBeLoaded) {
    const auto missing = RunHost({"--module", "/missing/Module.so", "--every", "1s"});
    EXPECT_EQ(missing.code, 1);
    EXPECT_THAT(missing.errors, AllOf(HasSubstr("/missing/Module.so"), HasSubstr("0x8007007E")));
    const auto another = RunHost({"--module", HOST_OTHER_LIBRARY, "--every", "1s"});
    EXPECT_EQ(another.code, 1);
    EXPECT_THAT(another.errors, AllOf(HasSubstr("GetComponentsModuleObject"), HasSubstr("0x8007007F")));
}

TEST(Host, RefusesBadInputWithOneLine) {
    const auto result = RunHost({"--every", "5x"});
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1);
}

TEST(Host, ShowsHelpWithExamplesAndItsVersion) {
    const auto help = RunHost({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_THAT(help.lines,
                AllOf(Contains(HasSubstr("--every DURATION")), Contains(StartsWith("  ActionHost --every"))));
    EXPECT_THAT(RunHost({"log", "--help"}).lines, Contains(HasSubstr("--slow N")));
    EXPECT_THAT(RunHost({"--version"}).lines,
                ElementsAre(testing::MatchesRegex("ActionHost [0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+")));
}

}  // namespace
