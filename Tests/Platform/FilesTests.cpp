#include "Platform/Files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <tuple>

#include "Platform/Errors.h"
#include "Platform/Process.h"
#include "Support/TemporaryDirectory.h"

using namespace Platform;

namespace {

constexpr DWORD ShareNothing = 0;
constexpr DWORD ShareEverything = 7;

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { EXPECT_TRUE(CloseHandle(handle)); }
};
using File = std::unique_ptr<HANDLE, HandleCloser>;

File Open(const std::u16string& path, DWORD sharing = ShareEverything) {
    return File{CreateFileW(path.c_str(), FILE_APPEND_DATA, sharing, nullptr, OPEN_ALWAYS, 0, nullptr)};
}

bool IsOpen(const File& file) {
    return file.get() != INVALID_HANDLE_VALUE;
}

// Returns the error and the number of bytes written.
std::pair<DWORD, DWORD> Append(HANDLE file, const std::string& text) {
    DWORD written = 0;
    const BOOL done = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    return {done ? ERROR_SUCCESS : GetLastError(), written};
}

}  // namespace

TEST(Files, ShareAllOrNothingUntilTheLastHandleIsClosed) {
    const TemporaryDirectory directory;
    const std::u16string path = (directory / "file").u16string();
    for (const DWORD held : {ShareEverything, ShareNothing}) {
        File first = Open(path, held);
        HANDLE copy = nullptr;
        const HANDLE process = GetCurrentProcess();
        ASSERT_TRUE(DuplicateHandle(process, first.get(), process, &copy, 0, FALSE, DUPLICATE_SAME_ACCESS));
        File second{copy};
        first.reset();
        EXPECT_EQ(Append(second.get(), "x").first, ERROR_SUCCESS);
        EXPECT_EQ(IsOpen(Open(path)), held == ShareEverything);
        EXPECT_FALSE(IsOpen(Open(path, ShareNothing)));
        EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
        second.reset();
        EXPECT_TRUE(IsOpen(Open(path, ShareNothing)));
    }
    EXPECT_FALSE(IsOpen(Open(path, FILE_SHARE_READ)));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(Files, ReportWhyAWriteFailedAndHowMuchWasWritten) {
    EXPECT_EQ(Append(Open(u"/dev/full").get(), "x"), (std::pair{ERROR_DISK_FULL, DWORD{0}}));

    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    const int reader = open((directory / "pipe").c_str(), O_RDONLY | O_NONBLOCK);
    const File pipe = Open((directory / "pipe").u16string());
    EXPECT_EQ(Append(pipe.get(), "x"), (std::pair{ERROR_SUCCESS, DWORD{1}}));
    close(reader);
    EXPECT_EQ(Append(pipe.get(), "x"), (std::pair{ERROR_BROKEN_PIPE, DWORD{0}})) << "without a signal";

    const File file = Open((directory / "file").u16string());
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit tenBytes{10, before.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tenBytes), 0);
    const auto outcome = Append(file.get(), "0123456789abcdef");
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(outcome, (std::pair{ERROR_FILE_TOO_LARGE, DWORD{10}}));
}
