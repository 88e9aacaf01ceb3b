#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <tuple>

#include "OpenFile.h"

TEST(Files, RefuseToShareReadingOnly) {
    const TemporaryDirectory directory;
    EXPECT_FALSE(IsOpen(Open((directory / "file").u16string(), FILE_SHARE_READ)));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(Files, WhoseDirectoryMayNotBeCreatedAreDeniedNotMissing) {
    const TemporaryDirectory directory;
    const auto codeOf = [](const std::filesystem::path& path) {
        EXPECT_FALSE(IsOpen(Open(path.u16string())));
        int number = 0;
        EXPECT_EQ(_get_errno(&number), 0);
        return std::tuple(GetLastError(), number);
    };
    EXPECT_EQ(codeOf(directory / "a/b/file"), std::tuple(ERROR_PATH_NOT_FOUND, ENOENT));
    const uid_t user = geteuid();
    constexpr uid_t anybody = 65534;
    EXPECT_EQ(seteuid(user == 0 ? anybody : user), 0);
    EXPECT_EQ(codeOf("/usr/a/b/file"), std::tuple(ERROR_ACCESS_DENIED, EACCES));
    EXPECT_EQ(seteuid(user), 0);
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

    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit tenBytes{10, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tenBytes), 0);
    const auto outcome = Append(Open((directory / "file").u16string()).get(), "0123456789abcdef");
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(outcome, (std::pair{ERROR_FILE_TOO_LARGE, DWORD{10}})) << "without a signal";
}
