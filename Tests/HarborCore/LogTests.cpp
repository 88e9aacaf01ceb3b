#include <locale.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

#include "Common/Logging/FileLogger.h"
#include "Common/Logging/FunctionTrace.h"
#include "Common/Settings/SettingsStore.h"
#include "Stage.h"

using testing::ElementsAre;
using testing::MatchesRegex;

namespace Harbor {
namespace {

using Stage::LogLines;

// Ends after the log manager, since it exists before the first statement.
struct LateClient {
    ~LateClient() {
        if (!isArmed) return;
        Stage::Ticks += 6000;  // the settings would be read again
        _exit(IsLogEnabled(LogSeverity::Err) ? 1 : 0);
    }
    bool isArmed = false;
} TheLateClient;

TEST(LogStatement, IsDisabledAfterTheEndOfTheLog) {
    const auto exitWithALateClient = [] {
        LOG(Err, u"before the end");
        TheLateClient.isArmed = true;
        std::exit(2);
    };
    EXPECT_EXIT(exitWithALateClient(), testing::ExitedWithCode(0), "");
}

TEST(LogLine, HasFixedColumnsUnlessANameOrANumberIsTooLong) {
    const ScopedVariable zone("TZ", "XYZ-5:30");
    tzset();
    constexpr std::uint64_t moment = 133'540'960'890'120'345;  // 2024-03-05 07:08:09.0120345 UTC
    constexpr Platform::FILETIME time{static_cast<std::uint32_t>(moment), static_cast<std::uint32_t>(moment >> 32)};
    const std::string n25(25, 'n'), n26(26, 'n'), deepest(60, ' ');
    // Severity, file, line and indentation, and the resulting columns.
    const std::tuple<std::uint32_t, std::string, std::uint32_t, std::int32_t, std::string> rows[] = {
        {0, "", 1, -1, "NONE | 4660    86 | :1                             | "},
        {1, "a/b\\c.cpp", 65, 1, "CRIT | 4660    86 | c.cpp:65                       |   "},
        {2, "a\\b/" + n25, 9999, 0, "ERR  | 4660    86 | " + n25 + ":9999 | "},
        {7, n26, 123456, 30, "DBG3 | 4660    86 | " + n26 + ":123456| " + deepest},
        {8, n26 + "nn", 1, 31, "     | 4660    86 | " + n26 + ":1   | " + deepest}};
    for (const auto& [severity, file, line, indentation, columns] : rows) {
        TextBuffer result;
        result.Append(u"what was there");
        DefaultLogFormatter().Format(result, severity, {FromUtf8(file).c_str(), line}, u"one\r\ntwo %s \u00E9",
                                     indentation, &time);
        EXPECT_EQ(ToUtf8(result.View()), "2024-03-05 12:38:09.0120345 | " + columns + "one\r\ntwo %s \xC3\xA9\r\n");
    }
}

TEST(LogSettings, SelectTheSeverityByItsName) {
    LogLines log;
    const std::pair<Stage::Setting, std::uint32_t> rows[] = {{std::nullopt, 5}, {"NONE", 0},  {"CRIT", 1}, {"err", 2},
                                                             {"Warn", 3},       {"INFO", 4},  {"DBG", 5},  {"DBG3", 7},
                                                             {" \tdbg2\r ", 6}, {"DEBUG", 5}, {"6", 5},    {"", 5}};
    for (const auto& [name, limit] : rows) {
        log.SetSeverity(name);
        for (std::uint32_t severity = 0; severity < 10; ++severity) {
            EXPECT_EQ(IsLogEnabled(severity), severity != 0 && severity <= limit) << name.value_or("absent");
        }
        Stage::PassLogInterval();
        EXPECT_FALSE(IsLogEnabled(8));
    }
    EXPECT_THAT(Stage::TakeDebugOutput(), ElementsAre("LogSettings: MaxSeverity 'DEBUG' is not known, DBG is used\n",
                                                      "LogSettings: MaxSeverity '6' is not known, DBG is used\n"));
}

TEST(LogSettings, AreReadAgainOnlyAfterMoreThanFiveSeconds) {
    Stage::Ticks = 0xFFFFFF00 - 5000;  // the clock overflows in between
    LogLines log("ERR");
    EXPECT_FALSE(IsLogEnabled(LogSeverity::Warn));
    const ScopedVariable changed("GS_Logger_MaxSeverity", "WARN");
    Stage::Ticks += 5000;
    EXPECT_FALSE(IsLogEnabled(LogSeverity::Warn));
    Stage::Ticks += 1;
    EXPECT_TRUE(IsLogEnabled(LogSeverity::Warn));
}

struct Throwing {};
WideStream& operator<<(WideStream& stream, Throwing) {
    stream << u"half";
    throw 1;
}

TEST(LogStatement, EvaluatesItsOperandsOnlyWhenEnabledAndSurvivesExceptions) {
    LogLines log("WARN");
    int evaluated = 0;
    LOG(Info, u"off " << ++evaluated);
    LOG(Warn, u"on " << ++evaluated);
    LOG(Err, u"before " << Throwing() << u" after");
    LOG(Crit, static_cast<const WideChar*>(nullptr) << u' ' << static_cast<const char*>(nullptr));
    LOG(Err, std::hex << 255 << u' ' << reinterpret_cast<const void*>(0xABCDEF) << std::dec << u' ' << -8 << true);
    // A locale with a decimal comma, as the C library stores it.
    constexpr std::uint32_t comma[] = {
        0x20031115 ^ LC_NUMERIC, 6, 32, 34, 35, 36, 40, 44, ',', ',', 0, 0x2D465455, '8'};
    Stage::WriteText(Stage::Root() / "xx/LC_NUMERIC", std::string(reinterpret_cast<const char*>(comma), sizeof(comma)));
    const ScopedVariable locales("LOCPATH", Stage::Root());
    ASSERT_NE(setlocale(LC_NUMERIC, "xx"), nullptr);
    LOG(Err, 1.5 << u' ' << -1e20 / 3 << u' ' << 0.1 + 0.2);
    setlocale(LC_NUMERIC, "C");
    EXPECT_THAT(log.Take(), ElementsAre("WARN on 1", "ERR  before half... (***EXCEPTION***)", "CRIT (null) (null)",
                                        "ERR  ff 0000000000ABCDEF -81", "ERR  1.5 -3.33333e+19 0.3"));
}

TEST(LogStatement, ThrowsOutOfMemoryAsACode) {
    struct Exhausted final : ILogger, SettingsSource {
        void Write(const WideChar*, std::int32_t) override { throw std::bad_alloc(); }
        HRESULT GetString(const WideChar*, const WideChar*, WideString&) override { throw std::bad_alloc(); }
    } exhausted;
    const auto log = [] {
        LOG(Err, u"line");
        return 0;
    };
    const LogRegistration registration(exhausted);
    EXPECT_EQ(Stage::CodeThrownBy(log), E_OUTOFMEMORY);
    SettingsStore::Instance().AddSource(exhausted);
    Stage::PassLogInterval();
    EXPECT_EQ(Stage::CodeThrownBy(log), E_OUTOFMEMORY) << "in the refresh";
    SettingsStore::Instance().RemoveSource(exhausted);
}

TEST(LogManager, HoldsUpToFourLoggersEachOnce) {
    static std::vector<ILogger*> heard;
    struct Logger final : ILogger {
        void Write(const WideChar*, std::int32_t) override { heard.push_back(this); }
    } loggers[5];
    LogManager& manager = LogManager::Instance();
    for (auto& logger : loggers) EXPECT_EQ(manager.Register(&logger), &logger != &loggers[4]);
    EXPECT_THAT(Stage::TakeDebugOutput(), ElementsAre("LogManager: Too many loggers\n"));
    EXPECT_TRUE(manager.Register(&loggers[2]));
    LOG(Err, u"all");
    manager.Unregister(&loggers[0]);
    EXPECT_TRUE(manager.Register(&loggers[4]));
    LOG(Err, u"the free slot is the first");
    for (auto& logger : loggers) manager.Unregister(&logger);
    LOG(Err, u"none");
    EXPECT_THAT(heard, ElementsAre(&loggers[0], &loggers[1], &loggers[2], &loggers[3],  //
                                   &loggers[4], &loggers[1], &loggers[2], &loggers[3]));
}

TEST(FunctionTrace, ReportsOnlyExceptionsThatLeaveItsScope) {
    LogLines log;
    struct TracesAtItsEnd {
        ~TracesAtItsEnd() { TRACE_FUNCTION(Dbg2, u"Nest"); }
    };
    const auto throwThroughTraces = [] {
        TRACE_FUNCTION(Dbg, Throwing());
        const TracesAtItsEnd cleanup;
        std::thread([] { LOG(Info, u"other thread"); }).join();
        throw 1;
    };
    EXPECT_THROW(throwThroughTraces(), int);
    EXPECT_THAT(log.Take(), ElementsAre("DBG  Entering: half... (***EXCEPTION***)", "INFO other thread",
                                        "DBG2   Entering: Nest", MatchesRegex(R"(DBG2   Exiting: Nest \[.* ms\])"),
                                        MatchesRegex(R"(DBG  EXCEPTION at: half\.\.\. .* \[.* ms\])")));
    EXPECT_EQ(ThreadIndentation::Depth(), 0u);
}

TEST(FunctionTrace, TestsItsSeverityAtEachLine) {
    LogLines log("DBG");
    for (const char* const name : {"DBG3", "ERR"}) {
        TRACE_FUNCTION(Dbg3, u"Change");
        LOG(Err, u"inside");
        log.SetSeverity(name);
    }
    LOG(Err, u"after");
    EXPECT_THAT(log.Take(), ElementsAre("ERR  inside", "DBG3 Entering: Change", "ERR    inside", "ERR  after"));
}

TEST(FunctionTrace, ShowsMillisecondsInGroups) {
    for (const auto& [time, text] :
         {std::pair{12l, u" [0.012 ms]"}, {86'400'000'000'007, u" [86 400 000 000.007 ms]"}}) {
        WideStream stream;
        EXPECT_EQ((stream << ElapsedTime{time}).View(), text);
    }
    EXPECT_EQ(MicrosecondsOf(999, 1'000'000'000), 0);
    EXPECT_EQ(MicrosecondsOf(12'000, 1'000'000'000), 12);
    EXPECT_EQ(MicrosecondsOf(7, 99'999), 70) << "a slow counter";
}

}  // namespace
}  // namespace Harbor
