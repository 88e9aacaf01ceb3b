#include "LogFileFixture.h"
#include "Platform/Errors.h"

namespace Harbor {

TEST_F(LogFile, StartsWithABannerAndContinuesAfterAChange) {
    ExpectContentsAfter(
        "nothing", [] {}, "B123", "");
    ExpectContentsAfter(
        "renamed", [&] { fs::rename(file_, other_); }, "B3", "B12");
    ExpectContentsAfter(
        "emptied", [&] { fs::resize_file(file_, 0); }, "23", "");
}

TEST_F(LogFile, StopsAtItsThresholdAndReportsThatOnce) {
    const ScopedVariable keepOpen("GS_Logger_KeepOpenInterval", "0"),
        threshold("GS_Logger_LogFileSizeThresholdMB", "1");
    PassLogInterval();
    FileLogger logger = Logger();
    Write(logger, u"1");
    constexpr std::uintmax_t megabyte = 1 << 20;
    const std::string tooBig = "FileLogger: log file '" + file_.string() + "' is too big (size=";
    // The file's size, its growth by one line, and the debug output.
    const std::tuple<std::uintmax_t, std::uintmax_t, Stage::Strings> steps[] = {
        {megabyte - 1, 2, {}},
        {megabyte, 0, {tooBig + "1MB threshold=1MB)\n"}},
        {3 * megabyte, 0, {}},
        {megabyte - 1, 2, {}},
        {5120 * megabyte, 0, {tooBig + "5120MB threshold=1MB)\n"}}};
    for (const auto& [size, growth, output] : steps) {
        fs::resize_file(file_, size);
        Write(logger, u"2");
        EXPECT_EQ(fs::file_size(file_), size + growth);
        EXPECT_EQ(Stage::TakeDebugOutput(), output) << size;
    }
    const ScopedVariable noThreshold("GS_Logger_LogFileSizeThresholdMB", "0");
    PassLogInterval();
    Write(logger, u"2");
    EXPECT_EQ(fs::file_size(file_), 5120 * megabyte + 2) << "no limit";
}

TEST_F(LogFile, IsOpenedInFourTriesWhileAnotherHoldsIt) {
    for (const int releasedAt : {3, 5}) {
        SystemHandle holder(Platform::CreateFileW(Stage::Wide(file_).c_str(), Platform::FILE_APPEND_DATA, 0, nullptr,
                                                  Platform::OPEN_ALWAYS, Platform::FILE_ATTRIBUTE_NORMAL, nullptr));
        ExpectTries(releasedAt, [&] { holder.reset(); });
        holder.reset();
        EXPECT_EQ(ReadLog(file_), "B1") << "the second line must be lost";
    }
    EXPECT_THAT(Stage::TakeDebugOutput(), testing::Contains(CannotOpen("0x80070020")).Times(1));
}

}  // namespace Harbor
