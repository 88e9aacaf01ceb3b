#include "Host/Report.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace Host;

namespace {

RegistrationState Called(const std::string& registration, std::uint64_t calls, double late) {
    return {registration, calls, LatenessStatistics::Range{0, 1, late}, std::nullopt};
}

TEST(Report, KeepsTheStatusLineBelowTheOthersAndInsideTheTerminal) {
    std::ostringstream out;
    Report report(out, Style::Text, Terminal{.width = 37, .hasColors = false}, [] {});
    ASSERT_TRUE(report.HasStatusLine());
    const auto takeOutput = [&] { return std::exchange(out, std::ostringstream()).str(); };
    report.SetStatusLine({Called("a", 2, 2.5), Called("b", 1, 13.25)});
    EXPECT_EQ(takeOutput(), "on command  calls 3, late at most 13");
    report.AddAlive({.inModule = 3, .byClass = {{"ActionImpl", 2}, {"ActionManager", 1}}});
    EXPECT_EQ(takeOutput(),
              "\r\x1b[Kalive: 3 objects of the module (ActionImpl 2, ActionManager 1), 0 of the host, 0 open node "
              "handles\non command  calls 3, late at most 13");
    report.RemoveStatusLine();
    EXPECT_EQ(takeOutput(), "\r\x1b[K");
    report.RemoveStatusLine();
    EXPECT_EQ(takeOutput(), "");
}

TEST(Report, HasNoStatusLineForProgramsAndWithoutATerminal) {
    std::ostringstream out;
    EXPECT_FALSE(Report(out, Style::Json, Terminal{}, [] {}).HasStatusLine());
    EXPECT_FALSE(Report(out, Style::Text, std::nullopt, [] {}).HasStatusLine());
}

}  // namespace
