#include "Common/Base/HRes.h"
#include "Subsystems/ActionManager/TimedAction.h"
#include "TestSupport.h"

namespace {

constexpr auto Repeat = TimedActionType::Repeat;
constexpr auto SpecificTime = TimedActionType::SpecificTime;
constexpr auto NoSuchType = static_cast<TimedActionType>(-1);
constexpr TimePoint Day = std::chrono::sys_days{std::chrono::year{2024} / 2 / 29};
constexpr Ticks Tick{1};

std::string Formatted(const TimePoint& time) {
    return Narrow(FormatTimePoint(time));
}

class Schedules : public LeakChecked {};

}  // namespace

TEST_F(Schedules, RejectInvalidSettingsAndLogTheReason) {
    const std::string presence =
        "ERR Invalid repeat time interval. The interval cannot be null, and only one option should be set: seconds or "
        "milliseconds. Regular Action: ";
    const std::string ofDay =
        "ERR Repeat time interval is invalid. It must be multiple of 24 or must be divided by 24. Regular Action: ";
    const std::string start = "ERR Start time should be less than seconds count in a day. Regular Action: ";
    const std::string length =
        "ERR Repeat time interval is too long. It must be less than 4294967296 milliseconds. Regular Action: ";
    const struct {
        TimedActionSettings settings;
        std::string line;
    } table[] = {
        {{0, false, 0, Repeat, 0}, presence + "[Repeat; Start = 0(sec); IsLocalTime = 0; Interval = 0(sec) 0 (ms)]"},
        {{9, true, 7, SpecificTime, 8},
         presence + "[SpecificTime; Start = 9(sec); IsLocalTime = 1; Interval = 7(sec) 8 (ms)]"},
        {{0, false, 0, NoSuchType, 0}, presence + "[-1; Start = 0(sec); IsLocalTime = 0; Interval = 0(sec) 0 (ms)]"},
        {{86400, false, 7, SpecificTime, 0}, ofDay + "*"},
        {{0, false, 50000, SpecificTime, 0}, ofDay + "*"},
        {{0, false, 90000, SpecificTime, 0}, ofDay + "*"},
        {{86400, false, 86400, SpecificTime, 0}, start + "*"},
        {{0, false, 4294968, Repeat, 0}, length + "*"},
        {{0, false, 536870912, Repeat, 0}, length + "*"},
        {{86400, false, 7, NoSuchType, 0}, "ERR Unknown TimedActionType: -1"},
    };
    CapturedLog log("ERR");
    for (const auto& row : table) {
        try {
            const TimedAction action(row.settings);
            ADD_FAILURE() << row.line;
        } catch (const HRX& failure) {
            EXPECT_EQ(failure.Code(), E_INVALIDARG);
        }
        EXPECT_TRUE(log.Wrote({row.line}));
    }
}

TEST_F(Schedules, ComputeTheirFirstRun) {
    struct Zone {
        Platform::DWORD result;
        Platform::DYNAMIC_TIME_ZONE_INFORMATION biases;
    };
    const Zone utc{Platform::TIME_ZONE_ID_UNKNOWN, {}},
        east{Platform::TIME_ZONE_ID_UNKNOWN, {.Bias = -180, .StandardBias = 60, .DaylightBias = 60}};
    const Zone west{Platform::TIME_ZONE_ID_UNKNOWN, {.Bias = 300}},
        india{Platform::TIME_ZONE_ID_UNKNOWN, {.Bias = -330}};
    const Zone winter{Platform::TIME_ZONE_ID_STANDARD, {.Bias = -60, .StandardBias = 30, .DaylightBias = -60}};
    const Zone summer{Platform::TIME_ZONE_ID_DAYLIGHT, {.Bias = -60, .StandardBias = 30, .DaylightBias = -60}};
    const Zone failing{Platform::TIME_ZONE_ID_INVALID, {.Bias = 300}}, strange{3, {.Bias = 300}};
    const std::string difference = "DBG2 LocalTimeDiff: ", zero = difference + "0";
    const std::string warning = "WARN Cannot determine local time zone bias.", utcUsed = "*. UTC time will be used.";
    const std::string nextDay =
        "DBG2 Current time is greater then schedule start point. Start action with the next day.";
    const struct {
        TimedActionSettings settings;
        Zone zone;
        TimePoint creation, firstRun;
        Texts lines;  // besides those that every creation logs
    } table[] = {
        {{99999, true, 3600, Repeat, 0}, east, Day + 5h + Tick, Day + 6h + Tick, {}},
        {{0, false, 0, Repeat, 1500}, utc, Day - 1ms, Day + 1499ms, {}},
        {{0, false, 0, Repeat, 0xFFFFFFFF}, utc, Day, Day + 4294967295ms, {}},
        {{0, false, 4294967, Repeat, 0}, utc, Day, Day + 4294967s, {}},
        {{3600, false, 86400, SpecificTime, 0}, east, Day + 30min, Day + 1h, {}},
        {{3600, false, 86400, SpecificTime, 0}, utc, Day + 1h, Day + 1h, {}},
        {{3600, false, 86400, SpecificTime, 0}, utc, Day + 1h + Tick, Day + 25h, {nextDay}},
        {{3600, true, 86400, SpecificTime, 0}, east, Day + 5h, Day + 22h, {difference + "-10800"}},
        {{3600, true, 86400, SpecificTime, 0}, east, Day + 23h, Day + 46h, {difference + "-10800", nextDay}},
        {{10800, true, 1, SpecificTime, 0}, east, Day, Day, {difference + "-10800"}},
        {{72000, true, 86400, SpecificTime, 0}, west, Day + 30min, Day + 25h, {difference + "18000"}},
        {{21600, true, 86400, SpecificTime, 0}, india, Day, Day + 30min, {difference + "-19800"}},
        {{7200, true, 86400, SpecificTime, 0}, winter, Day, Day + 90min, {difference + "-1800"}},
        {{7200, true, 86400, SpecificTime, 0}, summer, Day, Day, {difference + "-7200"}},
        {{60, true, 1, SpecificTime, 0}, failing, Day, Day + 1min, {zero, warning + "0x80070005 " + utcUsed}},
        {{60, true, 1, SpecificTime, 0}, strange, Day, Day + 1min, {zero, warning + "0x80004005 " + utcUsed}},
    };
    CapturedLog log("DBG2");
    for (const auto& row : table) {
        System.zoneResult = row.zone.result;
        System.zone = row.zone.biases;
        System.clock = row.creation;
        const TimedAction action(row.settings);
        EXPECT_EQ(action.FirstRunTime(), row.firstRun) << Formatted(action.FirstRunTime());
        Texts expected{"DBG Regular action:[*] action created: '" + Shown(action.GetAction()) + "'.",
                       "DBG Action creation time: " + Formatted(row.creation)};
        expected.insert(expected.end(), row.lines.begin(), row.lines.end());
        expected.push_back(
            (row.settings.Type == Repeat ? "DBG Action First Run Time: " : "DBG Action first run time: ") +
            Formatted(row.firstRun));
        EXPECT_TRUE(log.Wrote(expected));
    }
}

TEST_F(Schedules, LogWhyTheyAreNotDue) {
    System.clock = Day;
    TimedAction action({0, false, 0, Repeat, 1000});
    const std::string pointer = Shown(action.GetAction()), shown = "DBG2 Action: '" + pointer + "'.";
    CapturedLog log("DBG2");
    EXPECT_FALSE(action.ShouldBeTriggered(Day));
    EXPECT_TRUE(log.Wrote({shown, "DBG2 Checked time: 2024-02-29 00:00:00.000", "DBG2 Action: " + pointer + "'.",
                           "DBG2 ActionFirstRunTime does not come"}));
    action.SetTriggeredTime(Day + 1500ms);
    EXPECT_TRUE(log.Wrote({"DBG Action: '" + pointer + "'.", "DBG Triggered time set: 2024-02-29 00:00:01.500"}));
    EXPECT_FALSE(action.ShouldBeTriggered(Day + 1600ms));
    EXPECT_TRUE(log.Wrote({shown, "DBG2 Checked time: 2024-02-29 00:00:01.600", shown,
                           "DBG2 IntervalStart: 2024-02-29 00:00:01.000", shown,
                           "DBG2 Action already triggered during the current interval."}));
    EXPECT_EQ(Formatted(TimePoint::min()), "1601-01-01 00:00:00.000");
}

TEST_F(Schedules, AreDueOnceInEachIntervalThatIsReached) {
    struct Step {
        Ticks sinceCreation;
        bool due;
        bool run = false;  // then records the moment as the last run
    };
    const struct {
        std::uint32_t interval;  // in ms
        std::vector<Step> steps;
    } table[] = {
        {3600000, {{0s, false}, {1h - Tick, false}, {1h, true}, {3600200ms, true, true}, {3601s, false}}},
        {3600000,
         {{1h + 1s, true, true}, {2h - Tick, false}, {2h + 100ms, true, true}, {3h - Tick, false}, {3h, true}}},
        {3600000, {{10h + 5s, true, true}, {10h + 6s, false}, {11h - Tick, false}, {11h, true}}},
        {1500, {{1500ms - Tick, false}, {1501ms, true, true}, {2999ms, false}, {3s, true}}},
        {4294967295, {{4294967294ms, false}, {4294967296ms, true, true}, {8589934589ms, false}, {8589934590ms, true}}},
        // A run at the very first tick of an interval does not use it up.
        {3600000, {{1h, true, true}, {1h + 1s, true, true}, {1h + 2s, false}}},
        // The clock goes back.
        {3600000, {{5h + 1s, true, true}, {3h, false}, {30min, false}, {5h, false}, {6h, true}}},
    };
    for (const auto& row : table) {
        System.clock = Day;
        TimedAction action({0, false, 0, Repeat, row.interval});
        for (const Step& step : row.steps) {
            const TimePoint moment = Day + step.sinceCreation;
            EXPECT_EQ(action.ShouldBeTriggered(moment), step.due) << Formatted(moment);
            EXPECT_EQ(action.ShouldBeTriggered(moment), step.due) << "the check must not change the state";
            if (step.run) action.SetTriggeredTime(moment);
        }
    }
}
