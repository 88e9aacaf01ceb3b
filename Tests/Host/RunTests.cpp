// The host at work, with the real module on the real clock.
#include <signal.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "../Platform/TemporaryDirectory.h"
#include "ChildProcess.h"
#include "Common/Text.h"

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr char NothingAlive[] = "alive: 0 objects of the module, 0 of the host, 0 open node handles";

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

TEST(Host, CountsLatenessFromTheDueMomentAndSumsItUp) {
    ChildProcess host({"--polling", "5", "--at", "+1s,1s", "--json"});
    const auto call = json::parse(host.ReadUntil("\"call\"").back());
    const std::string time = call["time"];  // 2024-03-05T07:08:09.012+02:00
    const int shown = std::stoi(time.substr(20, 3));
    const double lateness = call["latenessMs"];
    EXPECT_GE(lateness, 0);
    EXPECT_NEAR(std::fmod(lateness, 1000), shown, 1) << "the due moment is a full second";
    host.Type("quit\n");
    const auto lines = host.Finish().lines;
    const auto calls = 1 + std::ranges::count_if(lines, [](auto& line) { return line.find("\"call\"") != line.npos; });
    const auto summary = json::parse(lines.at(lines.size() - 2));
    EXPECT_EQ(summary["registration"], "at +1s,1s");
    EXPECT_EQ(summary["calls"], calls);
    EXPECT_LE(summary["latenessMs"]["min"], lateness);
    EXPECT_GE(summary["latenessMs"]["max"], lateness);
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

TEST(Host, FollowsALogIntoTheNextFileOfItsName) {
    const TemporaryDirectory directory;
    const std::string path = directory / "Module.log";
    const auto write = [&](const std::string& message, std::ios::openmode mode = std::ios::app) {
        const auto line =
            Harbor::FromUtf8("2024-03-05 07:08:09.0120345 | ERR  | 4660    86 | ActionImpl:29 | " + message + "\r\n");
        const std::string_view bytes(reinterpret_cast<const char*>(line.data()), line.size() * sizeof(line[0]));
        std::ofstream(path, std::ios::binary | mode) << bytes.substr(0, 51) << std::flush << bytes.substr(51);
    };
    write("first");
    ChildProcess host({"log", "--follow", path});
    host.ReadUntil("first");
    write("second");
    host.ReadUntil("second");
    std::filesystem::rename(path, directory / "Module.log.1");
    write("a third one, in a longer file");
    write("third");
    EXPECT_THAT(host.ReadUntil("| third"), testing::ElementsAre(HasSubstr("a third one"), HasSubstr("third")));
    write("fourth", std::ios::trunc);
    host.ReadUntil("fourth");
    host.Signal(SIGTERM);
    const auto result = host.Finish();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
}

}  // namespace
