#include "Host/Run/Report.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace Host;

namespace {

RegistrationState Called(const std::string& registration, std::uint64_t calls, double late) {
    return {.registration = registration, .calls = calls, .lateness = LatenessStatistics::Range{0, 1, late}};
}

TEST(Report, KeepsOneLineBelowAllOthersAndWithinTheWidth) {
    std::ostringstream out, messages;
    std::size_t width = 37;
    ConsoleOutput output(out, messages, Terminal{.width = [&] { return width; }, .hasColors = false}, [] {});
    Report report(output, OutputFormat::Text);
    ASSERT_TRUE(report.HasStatusLine());
    const auto takeOutput = [&] { return std::exchange(out, std::ostringstream()).str(); };
    report.ShowStatusOf([] { return std::vector{Called("a", 2, 2.5), Called("b", 1, 13.25)}; });
    report.RefreshStatusLine();
    EXPECT_EQ(takeOutput(), "on command  calls 3, max lateness 13\r");
    width = 12;
    report.AddMessage("wrong\n");
    EXPECT_EQ(messages.str(), "wrong\n");
    EXPECT_EQ(takeOutput(), "\r\x1b[Jon command \r");
    report.SetTypedLine("start gröüße");
    report.AddTypedLine("x");
    EXPECT_EQ(takeOutput(), "\r\x1b[J> rt gröüße\r\x1b[J> x\n> rt gröüße");
    report.RemoveStatusLine();
    EXPECT_EQ(takeOutput(), "\r\x1b[Jon command \r\r\x1b[J");
    report.RefreshStatusLine();
    EXPECT_EQ(takeOutput(), "");
}

TEST(Report, HasNoStatusLineInJsonOrWithoutATerminal) {
    std::ostringstream out;
    ConsoleOutput terminal(out, out, Terminal{.width = [] { return 80u; }}, [] {});
    ConsoleOutput file(out, out, std::nullopt, [] {});
    EXPECT_FALSE(Report(terminal, OutputFormat::Json).HasStatusLine());
    EXPECT_FALSE(Report(file, OutputFormat::Text).HasStatusLine());
}

}  // namespace
