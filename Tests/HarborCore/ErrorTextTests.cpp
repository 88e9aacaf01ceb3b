#include <barrier>
#include <thread>

#include "Common/ErrorHandling.h"
#include "Stage.h"

using testing::ElementsAre;
using testing::MatchesRegex;

namespace Harbor {
namespace {

void SetMessageFiles(const std::string& files, const std::string& fallbackFiles) {
    EXPECT_EQ(setenv("GS_ErrorHandling_MessageFile", files.c_str(), 1), 0);
    EXPECT_EQ(setenv("GS_ErrorHandling_FallbackMessageFile", fallbackFiles.c_str(), 1), 0);
}

void AskEachSource() {
    const auto elsewhere = Stage::Root() / "fallback.txt";
    Stage::WriteText(Stage::ModuleDirectory() / "own.txt",
                     "0x80040200\t0\tFirst\n0x80040201\t0\t%1 is full. ..  .\n0x800401B0\t0\tnot asked\n"
                     "0x8004FFFF\t0\tLast\n0x80050000\t0\tnot asked\n");
    Stage::WriteText(elsewhere,
                     "0x80040201\t0\tnot asked\n0x800401B0\t0\tBelow the range\n0x80050000\t0\tBehind the range\n"
                     "0x80040300\t0\tOnly here\n0x80070002\t0\tnot asked\n0x8007EE00\t0\tWhole code\n"
                     "0xEE00\t0\tnot asked\n0xEE01\t0\tLow word\n");
    SetMessageFiles("own.txt", elsewhere.string() + ",own.txt");
    Stage::LogLines log;
    const std::pair<std::uint32_t, const char*> rows[] = {{0x80040200, "First"},
                                                          {0x80040201, "%1 is full"},
                                                          {0x8004FFFF, "Last"},
                                                          {0x80040300, "Only here"},
                                                          {0x800401B0, "Below the range"},
                                                          {0x80050000, "Behind the range"},
                                                          {0x80070002, "The system cannot find the file specified"},
                                                          {0x8007EE00, "Whole code"},
                                                          {0x8007EE01, "Low word"},
                                                          {0x8008EE01, "<no description>"},
                                                          {0x8004EEEE, "<no description>"}};
    for (const auto& [code, text] : rows) EXPECT_EQ(ToUtf8(DescribeError(code)), text);
    EXPECT_THAT(log.Take(), ElementsAre(MatchesRegex("ERR  Loading errormsg module 'own.txt' failed: 0x8007007E The "
                                                     "specified module could not be found \\[.*\\]")))
        << "a bare name of the second list isn't looked for beside this module";
}

void LoadTooMany() {
    const std::string directory = Stage::ModuleDirectory().string() + "/";
    for (const char digit : {'0', '1', '2', '3', '4', '5'}) {
        Stage::WriteText(directory + digit + ".txt", std::string("0x8004020") + digit + "\t0\tmodule " + digit);
    }
    Stage::WriteText(directory + "damaged.txt", "no message\n");
    SetMessageFiles(";0.txt||1.txt,missing.txt;damaged.txt|2.txt;3.txt," + directory + "4.txt;5.txt,;", "");
    Stage::LogLines log;
    EXPECT_EQ(DescribeError(0x80040205), u"<no description>");
    for (std::uint32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(ToUtf8(DescribeError(0x80040200 + i)), "module " + std::to_string(i));
    }
    const std::string begin = "ERR  Loading errormsg module '" + directory;
    EXPECT_THAT(log.Take(), ElementsAre(MatchesRegex(begin + "missing.txt' failed: 0x8007007E .*"),
                                        MatchesRegex(begin + "damaged.txt' failed: 0x800700C1 .*"),
                                        begin + "5.txt' failed: No more slots"));
}

void DescribeAtOnce() {
    SetMessageFiles("missing.txt", "");
    std::barrier start(2);
    const auto describe = [&] {
        start.arrive_and_wait();
        for (std::uint32_t i = 0; i < 64; ++i) EXPECT_EQ(DescribeError(0x80040200 + i), u"<no description>");
    };
    std::thread other(describe);
    describe();
    other.join();
}

TEST(ErrorTexts, ComeFromTheSourcesOfTheirCodeWithoutAFullStop) {
    EXPECT_IN_CHILD(AskEachSource());
}

TEST(ErrorTexts, ComeFromFiveModulesAtMostAndPassOverTheUnreadable) {
    EXPECT_IN_CHILD(LoadTooMany());
}

TEST(ErrorTexts, MayBeAskedForByTwoThreadsAtOnce) {
    EXPECT_IN_CHILD(DescribeAtOnce());
}

}  // namespace
}  // namespace Harbor
