#include "Platform/Process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <thread>

#include "Platform/Errors.h"
#include "Programs.h"

using namespace Platform;

namespace {

struct Capture {
    std::array<void*, 8> frames{};
    std::uint16_t count = 0;
    void* innerReturn = nullptr;
    void* outerReturn = nullptr;
};

PLATFORM_NOINLINE void Inner(Capture& capture, DWORD skip, DWORD room) {
    capture.innerReturn = __builtin_return_address(0);
    capture.count = RtlCaptureStackBackTrace(skip, room, capture.frames.data(), nullptr);
}

PLATFORM_NOINLINE Capture Outer(DWORD skip, DWORD room) {
    Capture capture;
    Inner(capture, skip, room);
    capture.outerReturn = __builtin_return_address(0);
    return capture;
}

}  // namespace

TEST(Process, KnowsItsThreadsAlsoAfterAForkAndKeepsTheirErrorsApart) {
    const auto isKnown = [] {
        return GetCurrentThreadId() == static_cast<DWORD>(gettid()) &&
               GetCurrentProcessId() == static_cast<DWORD>(getpid());
    };
    EXPECT_TRUE(isKnown());
    SetLastError(ERROR_DISK_FULL);
    std::jthread{[&] {
        EXPECT_TRUE(isKnown());
        EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    }}.join();
    const pid_t child = fork();
    if (child == 0) _exit(isKnown() ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(isKnown());
}

TEST(CallStack, BeginsInTheCallerOfTheCaptureAndIsCutAtBothEnds) {
    const Capture whole = Outer(0, 7);
    ASSERT_GE(whole.count, 3);
    const auto inInner = reinterpret_cast<std::uintptr_t>(whole.frames[0]) - reinterpret_cast<std::uintptr_t>(&Inner);
    EXPECT_LT(inInner, 0x1000u);
    EXPECT_EQ(whole.frames[1], whole.innerReturn);
    EXPECT_EQ(whole.frames[2], whole.outerReturn);

    const Capture cut = Outer(1, 2);
    EXPECT_EQ(cut.count, 2);
    EXPECT_EQ(cut.frames, (std::array<void*, 8>{cut.innerReturn, cut.outerReturn}));
    EXPECT_EQ(Outer(0, 0).count, 0);
    EXPECT_EQ(Outer(0xFFFFFFFF, 7).count, 0);
}

TEST(DebugOutput, WritesEachTextAtOnceAndSurvivesItsReader) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_DIRECT), 0);  // in this mode each read gives one write
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
    OutputDebugStringW(u"nobody reads this");
    dup2(standardError, STDERR_FILENO);
    close(standardError);
}
