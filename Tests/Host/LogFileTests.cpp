// The log command on real files.
#include <signal.h>

#include <nlohmann/json.hpp>

#include "../Platform/ScopedVariable.h"
#include "../Platform/TemporaryDirectory.h"
#include "ChildProcess.h"
#include "Common/Text.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class LogFiles : public testing::Test {
protected:
    static std::string Line(const char* severity, const std::string& message) {
        return Encoded("2024-03-05 07:08:09.0120345 | " + std::string(severity) +
                       " | 4660    86 | ActionImpl:29                  | " + message + "\r\n");
    }
    static std::string Encoded(const std::string& text) {
        const auto wide = Harbor::FromUtf8(text);
        return {reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(char16_t)};
    }
    void Append(const std::string& bytes) { std::ofstream(file_, std::ios::binary | std::ios::app) << bytes; }

    TemporaryDirectory directory_;
    const std::string file_ = directory_ / "Module.log";
};

TEST_F(LogFiles, ComeOutInUtf8WithTheLineEndsOfATextFile) {
    Append(Line("DBG ", "gr\u00FC\u00DFe\r\n  second") + Line("ERR ", "x"));
    const auto result = RunHost({"log", file_});
    EXPECT_EQ(result.code, 0);
    ASSERT_EQ(result.lines.size(), 3u);
    EXPECT_THAT(result.lines[0], testing::EndsWith("| gr\u00FC\u00DFe"));
    EXPECT_EQ(result.lines[1], "  second");
    EXPECT_EQ(result.errors, "");
}

TEST_F(LogFiles, BecomeOneJsonObjectALine) {
    Append(Line("WARN", "  say \"hi\"\r\nnext"));
    ChildProcess host({"log", "--json", "-"});
    std::ifstream file(file_, std::ios::binary);
    host.Type({std::istreambuf_iterator<char>(file), {}});
    const auto result = host.Finish();
    ASSERT_EQ(result.lines.size(), 1u);
    const auto object = nlohmann::json::parse(result.lines[0]);
    const nlohmann::json expected{{"time", "2024-03-05 07:08:09.0120345"},
                                  {"severity", "WARN"},
                                  {"process", 4660},
                                  {"thread", 86},
                                  {"source", "ActionImpl"},
                                  {"line", 29},
                                  {"indentation", 2},
                                  {"message", "say \"hi\"\r\nnext"}};
    EXPECT_EQ(object, expected);
}

TEST_F(LogFiles, TellBadInputOnStandardErrorAndGoOn) {
    Append(Encoded("garbage\r\n") + Line("ERR ", "a") + Line("ERR ", "cut").substr(0, 100) + "?" + Line("ERR ", "b"));
    const auto result = RunHost({"log", file_});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.lines, ElementsAre(HasSubstr("| a"), HasSubstr("2024"), HasSubstr("| b")));
    EXPECT_THAT(result.errors, HasSubstr("byte 0: 18 bytes"));
    EXPECT_THAT(result.errors, HasSubstr("half a character"));
}

TEST_F(LogFiles, AreFollowedIntoTheNextFileOfTheirName) {
    Append(Line("ERR ", "first"));
    ChildProcess host({"log", "--follow", file_});
    host.ReadUntil("first");
    Append(Line("ERR ", "second").substr(0, 51));
    Append(Line("ERR ", "second").substr(51));
    host.ReadUntil("second");
    std::filesystem::rename(file_, directory_ / "Module.log.1");
    Append(Line("ERR ", "a third one, in a longer file") + Line("ERR ", "third"));
    EXPECT_THAT(host.ReadUntil("third"), ElementsAre(HasSubstr("a third one")));
    host.ReadUntil("| third");
    std::ofstream(file_, std::ios::trunc).flush();
    Append(Line("ERR ", "fourth"));
    host.ReadUntil("fourth");
    host.Signal(SIGTERM);
    const auto result = host.Finish();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
}

TEST_F(LogFiles, OfTheModuleAreReadWholeAndWithoutComplaint) {
    const ScopedVariable path("GS_Logger_Path", directory_.Path());
    const ScopedVariable severity("GS_Logger_MaxSeverity", "DBG3");
    ChildProcess host({"--watch", "A/B", "--polling", "10"});
    host.Type("write \\Commands\\ManagedObjectsDataCollectionCommand\\A\\B Command=wrong\nstart A B\n");
    host.ReadUntil("ForcedStart");
    host.Type("quit\n");
    EXPECT_EQ(host.Finish().code, 0);

    const std::string log = directory_ / "OrvActionManager.log";
    const auto all = RunHost({"log", "--json", log});
    EXPECT_EQ(all.errors, "");
    EXPECT_THAT(all.lines.front(), HasSubstr("\"banner\":[\"*** Module: "));
    EXPECT_THAT(all.lines.back(), HasSubstr("ActionManager::FinalRelease"));
    const auto warnings = RunHost({"log", "--severity", "WARN", log});
    EXPECT_EQ(warnings.errors, "");
    EXPECT_THAT(warnings.lines.front(), HasSubstr("Unknown command: 'wrong'."));
    // The worker's body lasts from the beginning to the end.
    EXPECT_THAT(RunHost({"log", "--slow", "1", log}).lines, ElementsAre(testing::EndsWith("ActionManager::Start")));
}

}  // namespace
