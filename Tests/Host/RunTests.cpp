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

TEST(Host, TellsTheRunsOfAScheduleBeforehand) {
    const auto repeated = RunHost({"next", "00:30:00,30m", "1h", "--zone", "Europe/Helsinki", "--from",
                                   "2026-10-25T00:00:00Z", "--count", "2", "--json"});
    EXPECT_EQ(repeated.code, 0);
    EXPECT_THAT(
        Parse(repeated.lines),
        ElementsAre(
            R"({"schedule":"00:30:00,30m","utc":"2026-10-25T00:30:00.000Z","local":"2026-10-25T03:30:00.000+03:00","shiftMinutes":0,"repeated":true})"_json,
            R"({"schedule":"00:30:00,30m","utc":"2026-10-25T01:00:00.000Z","local":"2026-10-25T03:00:00.000+02:00","shiftMinutes":-60,"repeated":true})"_json,
            R"({"schedule":"1h","utc":"2026-10-25T01:00:00.000Z","local":"2026-10-25T03:00:00.000+02:00","shiftMinutes":-60,"repeated":true})"_json,
            R"({"schedule":"1h","utc":"2026-10-25T02:00:00.000Z","local":"2026-10-25T04:00:00.000+02:00","shiftMinutes":0,"repeated":false})"_json));
    const auto ahead = RunHost({"next", "06:00:00", "00:00:00,50d", "--local", "--zone", "America/New_York", "--from",
                                "2026-03-08T01:00:00Z", "--count", "1"});
    EXPECT_EQ(ahead.code, 1) << "the second one is refused";
    EXPECT_THAT(ahead.lines, ElementsAre("06:00:00 local",
                                         "  2026-03-08T11:00:00.000Z  2026-03-08T07:00:00.000-04:00"
                                         "  local time jumped ahead 60 min before"));
    EXPECT_THAT(ahead.errors, StartsWith("00:00:00,50d local: refused: the interval must be below 2^32 ms"));
    for (const std::vector<std::string>& bad : {std::vector<std::string>{"next", "1h", "--zone", "../passwd"},
                                                {"next", "1h", "--zone", "Europe/Nowhere"},
                                                {"next", "1h", "--from", "2026-02-30T00:00:00Z"},
                                                {"next", "1h", "--from", "1013-03-28T12:00:00Z"},
                                                {"next", "1h", "--count", "0"},
                                                {"next", "25:00:00"},
                                                {"explain", "soon"}}) {
        const auto result = RunHost(bad);
        EXPECT_EQ(result.code, 2);
        EXPECT_THAT(result.errors, HasSubstr(bad.back()));
    }
}

TEST(Host, ExplainsASchedule) {
    const auto taken = RunHost({"explain", "90m", "23:00:00", "--local"});
    EXPECT_EQ(taken.code, 0);
    EXPECT_THAT(taken.lines, AllOf(Contains(HasSubstr("every 5400 s, for the first time one interval after")),
                                   Contains(HasSubstr("at 23:00:00 local time, and from there every 86400 s")),
                                   Contains(HasSubstr("There is no catching up"))));
    const auto refused = RunHost({"explain", "0s", "00:00:00,7s", "50d"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_THAT(refused.lines, ElementsAre("0s", HasSubstr("must not be 0"), "00:00:00,7s", HasSubstr("divide a day"),
                                           "50d", HasSubstr("49.7 days")));
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
