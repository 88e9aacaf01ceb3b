#include "OpenFile.h"

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
}
