#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>
#include <thread>

#include "Common/Failures/ErrorHandling.h"
#include "Common/Settings/ModuleInfo.h"
#include "LogFileFixture.h"
#include "Platform/Errors.h"

using testing::ElementsAre;

namespace Harbor {
namespace {

// Windows allows no file to take the place of an open one, and the emulator may give a new file the id of the old one.
TEST_F(LogFile, StartsAgainAfterADeletionOrAReplacement) {
    const auto replace = [&] {
        Stage::WriteText(other_, std::string("X\0", 2));
        fs::rename(other_, file_);
    };
    ExpectContentsAfter(
        "deleted", [&] { fs::remove(file_); }, "B3", "");
    ExpectContentsAfter("replaced", replace, "XB3", "");
}

TEST_F(LogFile, IsInTheDirectoryThatTheSettingsName) {
    const fs::path module = Stage::ModuleDirectory(), impossible = directory_ / "file";
    Stage::WriteText(impossible, "");
    FileLogger logger(u"named.log", u"");
    int sleeps = 0;
    Stage::OnSleep = [&] { ++sleeps; };
    const std::pair<Stage::Setting, fs::path> rows[] = {
        {std::nullopt, module / "Logs"},   {"", module},
        {"deep/er", module / "deep/er"},   {(directory_ / "absolute").string(), directory_ / "absolute"},
        {directory_.string(), directory_}, {impossible.string(), ""},
        {impossible.string(), impossible}};
    for (const auto& [setting, directory] : rows) {
        if (directory == impossible) fs::remove(impossible);  // now the directory can be created
        const ScopedVariable path("GS_Logger_Path", setting);
        PassLogInterval();
        Write(logger, u"1");
        Write(logger, u"2");
        EXPECT_EQ(ReadLog(directory / "named.log"), directory.empty() ? "" : "12");
    }
    EXPECT_THAT(Stage::TakeDebugOutput(),
                ElementsAre("FileLogger: cannot open log file '" + (impossible / "named.log").string() +
                                "' (error: 0x80070003)\n",
                            "FileLogger: the system's own error is 20 (Not a directory)\n"))
        << "the file is opened again only after the interval";
    EXPECT_EQ(sleeps, 0) << "only a sharing violation is retried at once";
    fs::remove_all(module);
}

TEST_F(LogFile, IsOpenedInFourTriesWhileAnotherHasALease) {
    const int lease = Stage::TakeLease(file_);
    ExpectTries(3, [&] { close(lease); });
    EXPECT_EQ(ReadLog(file_), "B1");
}

TEST_F(LogFile, ReportsABannerThatCannotBeWritten) {
    FileLogger logger(u"/dev/full", u"B");
    Write(logger, u"1");
    EXPECT_THAT(Stage::TakeDebugOutput(),
                ElementsAre("FileLogger: cannot open log file '/dev/full' (error: 0x80070070)\n",
                            testing::StartsWith("FileLogger: the system's own error is 28 ("),
                            "FileLogger: cannot write (error: 0x80070070)\n"));
}

// Mounts a small file system that only this process sees. Returns false if the system does not permit that.
bool MountSmallDisk(const fs::path& at) {
    return unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", at.c_str(), "tmpfs", 0, "size=64k") == 0;
}

TEST_F(LogFile, ContinuesWhenAFullDiskHasSpaceAgain) {
    const auto fill = [this] {
        if (!MountSmallDisk(directory_)) _exit(2);
        Stage::WriteText(directory_ / "others", std::string(32 * 1024, '.'));
        FileLogger logger = Logger();
        const std::string line = std::string(99, 'x') + "\n";
        while (Stage::TakeDebugOutput().empty()) Write(logger, FromUtf8(line).c_str());
        const std::string full = ReadLog(file_);
        fs::remove(directory_ / "others");
        Write(logger, u"space again\n");
        // Whole lines, possibly a part of the line that filled the disk, and the line after it.
        const std::size_t part = (full.size() - 1) % line.size();
        EXPECT_GT(full.size(), 10 * line.size());
        EXPECT_EQ(full.substr(0, full.size() - part).find_first_not_of("Bx\n"), full.npos);
        EXPECT_EQ(ReadLog(file_), full + "space again\n");
        EXPECT_EQ(Stage::TakeDebugOutput(), Stage::Strings());
        umount2(directory_.c_str(), MNT_DETACH);
        Stage::ExitWithResult();
    };
    const pid_t child = fork();
    if (child == 0) fill();
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 2) GTEST_SKIP() << "this system does not permit mounting a disk";
    EXPECT_EQ(status, 0);
}

TEST_F(LogFile, ContainsEveryReturnedLineAfterItsProcessIsKilled) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = fork();
    if (child == 0) {
        FileLogger logger(Stage::Wide(file_), u"");
        for (int i = 0; write(pipe[1], &i, sizeof(i)) == sizeof(i);) {
            ++i;
            Write(logger, (FromUtf8(std::to_string(i)) + u"\n").c_str());
        }
    }
    close(pipe[1]);
    int returned = 0;
    while (returned < 500 && read(pipe[0], &returned, sizeof(returned)) > 0) continue;
    kill(child, SIGKILL);
    while (read(pipe[0], &returned, sizeof(returned)) > 0) continue;
    close(pipe[0]);
    EXPECT_EQ(waitpid(child, nullptr, 0), child);
    std::string expected;
    for (int i = 1; i <= returned; ++i) expected += std::to_string(i) + "\n";
    const std::string text = ReadLog(file_), last = std::to_string(returned + 1) + "\n";
    EXPECT_TRUE(text == expected || text == expected + last) << text.substr(text.size() - 20);
}

TEST(LogBanner, NamesTheModuleItsVersionAndTheProcess) {
    const std::string stars(100, '*'), pattern = R"(!\*\*\* Module: .*Orv\.so \(Base: 0x[0-9A-F]{16}\)!)"
                                                 R"(\*\*\* Version: 1\.20\.3\.4!)"
                                                 R"(\*\*\* Module description: Description!)"
                                                 R"(\*\*\* Process: .*Host\.exe \(Pid: 463412\)!)"
                                                 R"(\*\*\* Command line: .*HarborCoreTests.*!)";
    std::string banner = ToUtf8(MakeLogBanner(u"Description", {1, 20, 3, 4}));
    for (std::size_t at; (at = banner.find("\r\n")) != banner.npos;) banner.replace(at, 2, "!");
    ASSERT_TRUE(banner.starts_with(stars) && banner.ends_with(stars + "!")) << banner;
    EXPECT_THAT(banner.substr(100, banner.size() - 201), testing::MatchesRegex(pattern));
    EXPECT_EQ(MakeLogFileName(), u"Orv.log");
}

TEST_F(LogFile, KeepsLinesOfThreadsAndProcessesIntact) {
    constexpr int threadCount = 4, lineCount = 25'000;
    const auto line = [](char process, int thread, int i) {
        return process + std::to_string(thread * lineCount + i) +
               std::string(static_cast<std::size_t>(i * 7 % 50), '.');
    };
    const auto writeAll = [&](char process) {
        FileLogger logger(Stage::Wide(file_), u"banner\r\n");
        std::vector<std::jthread> threads;
        for (int t = 0; t < threadCount; ++t) {
            threads.emplace_back([&, t] {
                for (int i = 0; i < lineCount; ++i) {
                    if (i % 500 == 0) PassLogInterval();  // makes the writers open the file again
                    Write(logger, FromUtf8(line(process, t, i) + "\r\n").c_str());
                }
            });
        }
    };
    const pid_t other = fork();
    ASSERT_GE(other, 0);
    writeAll(other == 0 ? 'b' : 'a');
    if (other == 0) _exit(0);
    int status = -1;
    EXPECT_EQ(waitpid(other, &status, 0), other);
    EXPECT_EQ(status, 0);

    std::multiset<std::string> expected{"banner", "banner"}, written;
    for (const char process : {'a', 'b'}) {
        for (int i = 0; i < threadCount * lineCount; ++i) expected.insert(line(process, i / lineCount, i % lineCount));
    }
    const std::string text = ReadLog(file_);
    for (std::size_t at = 0, end; (end = text.find("\r\n", at)) != text.npos; at = end + 2) {
        written.insert(text.substr(at, end - at));
    }
    EXPECT_EQ(written, expected);
}

void LogWithoutADirectory() {
    const ScopedVariable keepOpen("GS_Logger_KeepOpenInterval", "0");
    FileLogger logger(u"named.log", u"");
    const LogRegistration registration(logger);
    const auto log = [] {
        LOG(Err, u"x");
        return 0;
    };
    Stage::ModuleIsKnown = false;
    EXPECT_EQ(Stage::CodeThrownBy(log), HResultFromWin32(Platform::ERROR_ACCESS_DENIED));
    Stage::ModuleError = Platform::ERROR_SUCCESS;
    EXPECT_EQ(Stage::CodeThrownBy(log), E_FAIL);
    EXPECT_EQ(Stage::CodeThrownBy([] { return ModuleFilePath(Stage::OtherModule); }), E_FAIL);
    EXPECT_EQ(Stage::CodeThrownBy([] { return DescribeError(0x80040201); }), S_OK)
        << "reporting the missing module fails";
    EXPECT_EQ(Stage::CodeThrownBy([] { return HRES::Unchecked(MakeHResult(0x80040202)).PublishErrorInfo(); }), S_OK);
    Stage::ModuleIsKnown = true;
    EXPECT_EQ(Stage::CodeThrownBy(log), S_OK) << "the next statement finds the directory";
}

TEST(FileLogger, ThrowsAFailureOfItsDirectoryFromTheStatementOnly) {
    EXPECT_IN_CHILD(LogWithoutADirectory());
}

}  // namespace
}  // namespace Harbor
