// What is written on the command line, in the configuration file and as commands.
#include <gmock/gmock.h>

#include "../Platform/TemporaryDirectory.h"
#include "Host/Failure.h"
#include "Host/LatenessStatistics.h"
#include "Host/Options.h"
#include "Host/ScheduleText.h"

using namespace DataCollection::ActionManagement;
using namespace Host;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

template <class Wanted = RunOptions>
Wanted Parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "ActionHost");
    return std::get<Wanted>(ParseOptions(static_cast<int>(arguments.size()), arguments.data()));
}

std::string Refusal(const std::vector<const char*>& arguments) {
    try {
        Parse(arguments);
    } catch (const BadInput& refusal) {
        return refusal.what();
    }
    return "accepted";
}

TEST(Durations, AreANumberWithAUnit) {
    const std::vector<std::pair<std::string, std::optional<std::chrono::milliseconds>>> cases{
        {"500ms", 500ms},
        {"2s", 2s},
        {"10m", 10min},
        {"1h", 1h},
        {"1d", 24h},
        {"0s", 0s},
        {"007s", 7s},
        {"4294967295ms", 4294967295ms},
        {"49710d", 24h * 49710},
        {"", {}},
        {"s", {}},
        {"5", {}},
        {"5 s", {}},
        {"-5s", {}},
        {"1.5s", {}},
        {"5S", {}},
        {"5sec", {}},
        {"4294967296ms", {}},
        {"49711d", {}},
        {"99999999999s", {}}};
    for (const auto& [text, expected] : cases) EXPECT_EQ(ParseDuration(text), expected) << text;
}

TEST(Options, CarryWhatWasAskedForUnderTheNameItHadThere) {
    const auto options = Parse({"--every", "500ms", "--at", "07:30:00,12h", "--local", "--every=1h", "--watch", "P/L",
                                "--bit0", "--polling", "20", "--duration", "3s", "--json", "--module", "M.so"});
    ASSERT_EQ(options.schedules.size(), 3u);
    EXPECT_EQ(options.schedules[0].label, "every 500ms");
    EXPECT_EQ(options.schedules[1].label, "every 1h");
    EXPECT_EQ(options.schedules[2].label, "at 07:30:00,12h local");
    EXPECT_TRUE(options.schedules[2].value.IsLocalTime);
    ASSERT_EQ(options.watches.size(), 1u);
    EXPECT_EQ(options.watches[0].value.ParentName, u"P");
    EXPECT_EQ(options.watches[0].value.LeafName, u"L");
    EXPECT_TRUE(options.watches[0].value.WithOptionBit0);
    EXPECT_EQ(options.polling, 20ms);
    EXPECT_EQ(options.duration, 3s);
    EXPECT_EQ(options.style, Style::Json);
    EXPECT_EQ(options.modulePath, "M.so");
}

TEST(Options, ThatAreWrongAreRefusedByNameAndValueWithWhatWouldBeRight) {
    struct Case {
        std::vector<const char*> arguments;
        const char* name;
        const char* value;
        const char* right;
    };
    const std::vector<Case> cases{
        {{"--every", "5x"}, "--every", "\"5x\"", "500ms"},
        {{"--every"}, "--every", "", "DURATION"},
        {{"--at", "25:00:00"}, "--at", "\"25:00:00\"", "HH:MM:SS"},
        {{"--watch", "Line1"}, "--watch", "\"Line1\"", "PARENT/LEAF"},
        {{"--watch", "A/B/C"}, "--watch", "\"A/B/C\"", "PARENT/LEAF"},
        {{"--every", "1s", "--polling", "-1"}, "--polling", "\"-1\"", "milliseconds"},
        {{"--every", "1s", "--duration", "soon"}, "--duration", "\"soon\"", "500ms"},
        {{"--every", "1s", "--do", "start A B"}, "--do", "\"start A B\"", "DURATION COMMAND"},
        {{"--every", "1s", "--do", "1s start A"}, "--do", "\" start A\"", "start PARENT LEAF"},
        {{"--every", "1s", "--duration", ""}, "--duration", "empty", "--help"},
        {{"--evry", "1s"}, "--evry", "1s", "--help"},
        {{"--config", "/missing.ini"}, "--config", "/missing.ini", "--help"},
        {{}, "nothing to register", "", "--every"},
        {{"--every", "1s", "compare", "a", "b"}, "--every", "compare", "--help"},
        {{"compare", "a"}, "NEW", "required", "--help"},
        {{"log", "x", "--severity", "LOUD"}, "--severity", "\"LOUD\"", "WARN"},
        {{"log", "x", "--slow", "many"}, "--slow", "\"many\"", "whole number"},
        {{"log", "-", "--follow"}, "--follow", "\"-\"", "file"},
        {{"log", "x", "--follow", "--slow", "3"}, "--follow", "--slow 3", "one of the two"}};
    for (const auto& [arguments, name, value, right] : cases) {
        const std::string refusal = Refusal(arguments);
        EXPECT_THAT(refusal, AllOf(HasSubstr(name), HasSubstr(value), HasSubstr(right)));
        EXPECT_EQ(refusal.find('\n'), refusal.npos) << refusal;
    }
}

class ConfigFiles : public testing::Test {
protected:
    std::string Write(const std::string& text) {
        WriteAll(directory_ / "host.ini", text);
        return directory_ / "host.ini";
    }

private:
    TemporaryDirectory directory_;
};

TEST_F(ConfigFiles, HoldTheLongOptionsWithALineForEachValue) {
    const std::string file = Write(
        "; comment\r\n# comment\n\n every = 500ms \r\nat=00:00:00,5s\nevery = \"2s\"\nwatch = A/B\nlocal = true\n"
        "do = 1s write \\A\\B \"text=a, b; c # d\"\nduration = 4s");
    const auto options = Parse({"--config", file.c_str()});
    ASSERT_EQ(options.schedules.size(), 3u);
    EXPECT_EQ(options.schedules[0].label, "every 500ms");
    EXPECT_EQ(options.schedules[1].label, "every 2s");
    EXPECT_EQ(options.schedules[2].label, "at 00:00:00,5s local");
    EXPECT_EQ(options.watches.size(), 1u);
    ASSERT_EQ(options.commands.size(), 1u);
    EXPECT_EQ(std::get<WriteCommand>(options.commands[0].command).attributes.at(0).value, u"a, b; c # d");
    EXPECT_EQ(options.duration, 4s);
}

TEST_F(ConfigFiles, AreRefusedWithTheLineThatIsWrong) {
    for (const char* line : {"evry = 1s", "every", "[section]", "= 1s", "help = true", "config = other.ini"}) {
        const std::string file = Write(std::string("every = 1s\n\n") + line + "\n");
        EXPECT_THAT(Refusal({"--config", file.c_str()}), AllOf(HasSubstr("--config: line 3"), HasSubstr(line)));
    }
    const std::string file = Write("every = often\n");
    EXPECT_THAT(Refusal({"--config", file.c_str()}), HasSubstr("\"often\""));
}

TEST(Commands, ThatAreWrongAreRefusedWithTheirForm) {
    const std::vector<std::pair<const char*, const char*>> cases{
        {"", "start, stop, write"},        {"go", "start, stop, write"},   {"start A", "start PARENT LEAF"},
        {"stop A B C", "stop PARENT"},     {"write \\A\\B", "NAME=VALUE"}, {"write \\A\\B x", "NAME=VALUE"},
        {"write \\A\\B =x", "NAME=VALUE"}, {"quit now", "quit"},           {"start \"A B", "quote"}};
    for (const auto& [line, right] : cases) {
        try {
            (void)ParseCommand(line);
            ADD_FAILURE() << "accepted: " << line;
        } catch (const BadInput& refusal) {
            EXPECT_THAT(refusal.what(), HasSubstr(right)) << line;
        }
    }
}

}  // namespace
