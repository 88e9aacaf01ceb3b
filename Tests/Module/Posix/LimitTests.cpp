#include <sys/resource.h>

#include "LoadedModule.h"

namespace {

class LimitedProcess : public StoreTest {};

TEST_F(LimitedProcess, ConfiguresAManagerWithoutAFreeFileDescriptor) {
    if (Sanitized) GTEST_SKIP() << "the checks of a sanitizer need descriptors";
    const LoadedModule module("DBG");
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    testing::internal::CaptureStderr();
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    {
        const auto manager = module.Create();
        EXPECT_EQ(Configure(manager, 1), S_OK);
    }
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::MatchesRegex("FileLogger: cannot open log file '.*' \\(error: 0x80070004\\)\n"
                                      "FileLogger: the system's own error is 24 \\(Too many open files\\)\n"));
}

}  // namespace
