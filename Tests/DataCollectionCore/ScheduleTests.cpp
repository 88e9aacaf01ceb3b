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

// With the longest interval, whose multiples exceed 32 bits.
TEST_F(Schedules, LogWhyTheyAreNotDue) {
    System.clock = Day;
    TimedAction action({0, false, 0, Repeat, 0xFFFFFFFF});
    const TimePoint thirdRun = Day + 3 * 4294967295ms;
    const std::string pointer = Shown(action.GetAction()), shown = "DBG2 Action: '" + pointer + "'.";
    CapturedLog log("DBG2");
    EXPECT_FALSE(action.ShouldBeTriggered(Day));
    EXPECT_TRUE(log.Wrote({shown, "DBG2 Checked time: 2024-02-29 00:00:00.000", "DBG2 Action: " + pointer + "'.",
                           "DBG2 ActionFirstRunTime does not come"}));
    action.SetTriggeredTime(thirdRun + 1ms);
    EXPECT_TRUE(log.Wrote({"DBG Action: '" + pointer + "'.", "DBG Triggered time set: 2024-07-27 03:08:21.886"}));
    EXPECT_FALSE(action.ShouldBeTriggered(thirdRun + 1s));
    EXPECT_TRUE(log.Wrote({shown, "DBG2 Checked time: 2024-07-27 03:08:22.885", shown,
                           "DBG2 IntervalStart: 2024-07-27 03:08:21.885", shown,
                           "DBG2 Action already triggered during the current interval."}));
    EXPECT_EQ(Formatted(TimePoint::min()), "1601-01-01 00:00:00.000");
}
