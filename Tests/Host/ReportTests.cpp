#include "Host/Run/Report.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace Host;

namespace {

RegistrationState Called(const std::string& registration, std::uint64_t calls, double late) {
    return {.registration = registration, .calls = calls, .lateness = LatenessStatistics::Range{0, 1, late}};
}

TEST(Report, KeepsTheStatusLineBelowOtherLinesAndWithinTheWidth) {
    std::ostringstream out;
    ConsoleOutput output(out, Terminal{.width = 37, .hasColors = false}, [] {});
    Report report(output, OutputFormat::Text);
    ASSERT_TRUE(report.HasStatusLine());
    const auto takeOutput = [&] { return std::exchange(out, std::ostringstream()).str(); };
    report.SetStatusLine({Called("a", 2, 2.5), Called("b", 1, 13.25)});
    EXPECT_EQ(takeOutput(), "on command  calls 3, max lateness 13");
    report.AddAlive({.inModule = 3, .byClass = {{"ActionImpl", 2}, {"ActionManager", 1}}});
    EXPECT_EQ(takeOutput(),
              "\r\x1b[Kalive: 3 objects of the module (ActionImpl 2, ActionManager 1), 0 of the host, 0 open node "
              "handles\non command  calls 3, max lateness 13");
    report.RemoveStatusLine();
    EXPECT_EQ(takeOutput(), "\r\x1b[K");
    report.RemoveStatusLine();
    EXPECT_EQ(takeOutput(), "");
}

TEST(Report, HasNoStatusLineInJsonOrWithoutATerminal) {
    std::ostringstream out;
    ConsoleOutput terminal(out, Terminal{}, [] {});
    ConsoleOutput file(out, std::nullopt, [] {});
    EXPECT_FALSE(Report(terminal, OutputFormat::Json).HasStatusLine());
    EXPECT_FALSE(Report(file, OutputFormat::Text).HasStatusLine());
}

}  // namespace
