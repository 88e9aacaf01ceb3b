#include "Platform/Process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <thread>

#include "Platform/Errors.h"

using namespace Platform;

TEST(Process, ReturnsItsIdsAfterAForkAndKeepsALastErrorPerThread) {
    const auto idsAreRight = [] {
        return GetCurrentThreadId() == static_cast<DWORD>(gettid()) &&
               GetCurrentProcessId() == static_cast<DWORD>(getpid());
    };
    EXPECT_TRUE(idsAreRight());
    SetLastError(ERROR_DISK_FULL);
    std::jthread{[&] {
        EXPECT_TRUE(idsAreRight());
        EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    }}.join();
    const pid_t child = fork();
    if (child == 0) _exit(idsAreRight() ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(idsAreRight());
}

TEST(DebugOutput, WritesEachTextInOneCallAndSurvivesAClosedReader) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_DIRECT), 0);  // in this mode each read returns one write
    const int standardError = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
    for (const WideChar* const text : {u"caf\u00e9 \U0001F600 ", u"second\n"}) {
        OutputDebugStringW(text);
        char packet[100];
        EXPECT_EQ(std::string(packet, static_cast<std::size_t>(read(ends[0], packet, sizeof packet))),
                  std::filesystem::path(text).string());
    }
    close(ends[0]);
    OutputDebugStringW(u"no reader");
    dup2(standardError, STDERR_FILENO);
    close(standardError);
}
