#include <thread>

#include "Common/Logging/FunctionTrace.h"
#include "Stage.h"

using testing::ElementsAre;
using testing::MatchesRegex;

namespace Harbor {
namespace {

using Stage::LogLines;

TEST(LogLine, IsWhatItsPrintfFormatGives) {
    const Stage::Variable zone("TZ", "XYZ-5:30");
    tzset();
    constexpr std::uint64_t moment = 133'540'960'890'120'345;  // 2024-03-05 07:08:09.0120345 UTC
    constexpr Platform::FILETIME time{static_cast<std::uint32_t>(moment), static_cast<std::uint32_t>(moment >> 32)};
    constexpr const char* names[] = {"NONE", "CRIT", "ERR", "WARN", "INFO", "DBG", "DBG2", "DBG3", "", ""};
    const std::pair<int, int> indentations[] = {{-1, 0}, {0, 0}, {30, 60}, {31, 60}};  // and their blanks
    std::uint32_t step = 0;
    for (const int length : {0, 1, 25, 26, 40}) {
        for (const std::uint32_t line : {1u, 9999u, 123456u, 4294967295u}) {
            for (const auto& [indentation, blanks] : indentations) {
                const std::uint32_t severity = ++step % 10;
                const std::string name(static_cast<std::size_t>(length), 'n');
                char expected[512];
                std::snprintf(expected, sizeof(expected),
                              "%04u-%02u-%02u %02u:%02u:%02u.%03u%04u | %-4.4s |%5u %5u | %.*s:%-*u| %*s%s\r\n", 2024u,
                              3u, 5u, 12u, 38u, 9u, 12u, 345u, names[severity], 0x1234u, 0x56u, 26, name.c_str(),
                              length < 26 ? 30 - length : 4, line, blanks, "", "one\r\ntwo %s \xC3\xA9");
                const WideString file = FromUtf8((step % 3 == 0 ? "" : step % 3 == 1 ? "a/b\\" : "c\\d/") + name);
                WideString result = u"what was there";
                DefaultLogFormatter().Format(result, severity, {file.c_str(), line}, u"one\r\ntwo %s \u00E9",
                                             indentation, &time);
                EXPECT_EQ(ToUtf8(result), expected);
            }
        }
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
    }
}

TEST(LogSettings, AreReadAgainOnlyAfterMoreThanFiveSeconds) {
    Stage::Ticks = 0xFFFFFF00 - 5000;  // the clock wraps on the way
    LogLines log("ERR");
    EXPECT_FALSE(IsLogEnabled(LogSeverity::Warn));
    const Stage::Variable changed("GS_Logger_MaxSeverity", "WARN");
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

TEST(LogStatement, EvaluatesItsOperandsWhenItIsLiveAndSurvivesThem) {
    LogLines log("WARN");
    int evaluated = 0;
    LOG(Info, u"off " << ++evaluated);
    LOG(Warn, u"on " << ++evaluated);
    LOG(Err, u"before " << Throwing() << u" after");
    LOG(Crit, static_cast<const WideChar*>(nullptr) << u' ' << static_cast<const char*>(nullptr));
    LOG(Err, std::hex << 255 << u' ' << reinterpret_cast<const void*>(0xABCDEF) << std::dec << u' ' << -8 << true);
    EXPECT_THAT(log.Take(), ElementsAre("WARN on 1", "ERR  before half... (***EXCEPTION***)", "CRIT (null) (null)",
                                        "ERR  ff 0000000000ABCDEF -81"));
}

TEST(LogManager, HasFourSlotsAndALoggerInOneAtMost) {
    struct Logger final : ILogger {
        void Write(const WideChar*, std::int32_t) override { heard->push_back(this); }
        std::vector<ILogger*>* heard = nullptr;
    } loggers[5];
    LogManager& manager = LogManager::Instance();
    std::vector<ILogger*> heard;
    for (auto& logger : loggers) {
        logger.heard = &heard;
        EXPECT_EQ(manager.Register(&logger), &logger != &loggers[4]);
    }
    EXPECT_THAT(Stage::TakeDebugOutput(), ElementsAre("LogManager: Too many loggers\n"));
    EXPECT_TRUE(manager.Register(&loggers[2]));
    LOG(Err, u"everybody");
    manager.Unregister(&loggers[0]);
    EXPECT_TRUE(manager.Register(&loggers[4]));
    LOG(Err, u"the free slot is the first");
    for (auto& logger : loggers) manager.Unregister(&logger);
    LOG(Err, u"nobody");
    EXPECT_THAT(heard, ElementsAre(&loggers[0], &loggers[1], &loggers[2], &loggers[3],  //
                                   &loggers[4], &loggers[1], &loggers[2], &loggers[3]));
}

void Nest(int levels) {
    TRACE_FUNCTION(Dbg2, u"Nest");
    if (levels > 1) Nest(levels - 1);
}

TEST(FunctionTrace, IndentsUpToThirtyLevelsAndComesBack) {
    LogLines log;
    Nest(40);
    const auto lines = log.Take();
    ASSERT_EQ(lines.size(), 80u);
    for (std::size_t i = 0; i < 40; ++i) {
        const std::string head = "DBG2 " + std::string(2 * std::min<std::size_t>(i, 30), ' ');
        EXPECT_EQ(lines[i], head + "Entering: Nest");
        EXPECT_THAT(lines[79 - i], MatchesRegex(head + R"(Exiting: Nest \[.* ms\])"));
    }
    EXPECT_EQ(ThreadIndentation::Depth(), 0u);
}

struct TracesAtItsEnd {
    ~TracesAtItsEnd() { Nest(1); }
};

void ThrowThroughTraces() {
    TRACE_FUNCTION(Dbg, Throwing());
    const TracesAtItsEnd cleanup;
    std::thread([] { LOG(Info, u"other thread"); }).join();
    throw 1;
}

TEST(FunctionTrace, TellsAnExceptionThatPassesFromOneThatIsInFlightElsewhere) {
    LogLines log;
    EXPECT_THROW(ThrowThroughTraces(), int);
    EXPECT_THAT(log.Take(), ElementsAre("DBG  Entering: half... (***EXCEPTION***)", "INFO other thread",
                                        "DBG2   Entering: Nest", MatchesRegex(R"(DBG2   Exiting: Nest \[.* ms\])"),
                                        MatchesRegex(R"(DBG  EXCEPTION at: half\.\.\. .* \[.* ms\])")));
}

void ChangeSeverity(LogLines& log, const char* name) {
    TRACE_FUNCTION(Dbg3, u"Change");
    LOG(Err, u"inside");
    log.SetSeverity(name);
}

TEST(FunctionTrace, TestsItsSeverityAtEachLine) {
    LogLines log("DBG");
    ChangeSeverity(log, "DBG3");
    ChangeSeverity(log, "ERR");
    LOG(Err, u"behind");
    EXPECT_THAT(log.Take(), ElementsAre("ERR  inside", "DBG3 Entering: Change", "ERR    inside", "ERR  behind"));
}

TEST(FunctionTrace, TellsMillisecondsInGroups) {
    const std::pair<std::int64_t, const WideChar*> texts[] = {{0, u" [0.000 ms]"},
                                                              {12, u" [0.012 ms]"},
                                                              {999'999, u" [999.999 ms]"},
                                                              {1'234'567, u" [1 234.567 ms]"},
                                                              {86'400'000'000'007, u" [86 400 000 000.007 ms]"}};
    for (const auto& [microseconds, text] : texts) EXPECT_EQ(FormatElapsed(microseconds), text) << microseconds;
    constexpr std::int64_t counters[][3] = {// ticks, their frequency, microseconds
                                            {999, 1'000'000'000, 0},
                                            {12'000, 1'000'000'000, 12},
                                            {7, 99'999, 70},
                                            {7, 1, 70},
                                            {35, 250'000, 175}};
    for (const auto& [ticks, frequency, microseconds] : counters) {
        EXPECT_EQ(MicrosecondsOf(ticks, frequency), microseconds) << ticks << ' ' << frequency;
    }
}

}  // namespace
}  // namespace Harbor
