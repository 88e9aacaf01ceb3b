// Runs whole years of the real cycle on a replaced clock. make_cases.py writes the cases and the expected calls.
#include <gmock/gmock.h>
#include <time.h>

#include <fstream>
#include <sstream>

#include "DataCollectionCore/TestSupport.h"
#include "Host/Schedules/NextRuns.h"
#include "Host/Schedules/ScheduleText.h"

namespace {

using std::chrono::milliseconds;

struct Case {
    std::string text, zone;
    TimePoint registered;
    TimedActionSettings schedule{};
    milliseconds polling{};
    int cycles = 0;
    std::map<int, milliseconds> jumps;  // of the clock, before the cycle
    std::size_t calls = 0;
    std::optional<TimePoint> first, last;
};

// "2026-01-01T00:00:00.137Z", or "-" for none.
std::istream& operator>>(std::istream& stream, std::optional<TimePoint>& moment) {
    std::string text;
    stream >> text;
    moment = Host::ParseMoment(text.substr(0, 19) + "Z");
    if (moment) *moment += milliseconds{std::stoi(text.substr(20))};
    return stream;
}

std::istream& operator>>(std::istream& stream, Case& row) {
    std::optional<TimePoint> registered;
    std::string kind, time, jumps;
    milliseconds::rep polling = 0;
    stream >> row.zone >> registered >> kind >> row.schedule.StartSeconds >> time >> row.schedule.IntervalSeconds >>
        row.schedule.IntervalMilliseconds >> polling >> row.cycles >> jumps >> row.calls >> row.first >> row.last;
    row.registered = registered.value_or(TimePoint{});
    row.schedule.Type = kind == "at" ? TimedActionType::SpecificTime : TimedActionType::Repeat;
    row.schedule.IsLocalTime = time == "local";
    row.polling = milliseconds{polling};
    std::istringstream list(jumps);
    milliseconds::rep jump = 0;
    char colon = 0, comma = 0;
    for (int cycle = 0; list >> cycle >> colon >> jump; list >> comma) row.jumps[cycle] = milliseconds{jump};
    return stream;
}

std::vector<Case> Cases() {
    std::ifstream file(ORV_YEAR_CASES);
    std::vector<Case> cases;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) continue;
        std::istringstream fields(line);
        fields >> cases.emplace_back();
        EXPECT_TRUE(fields) << line;
        cases.back().text = line;
    }
    return cases;
}

void SetZone(const std::string& name, const TimePoint& moment) {
    setenv("TZ", name.c_str(), 1);
    tzset();
    const time_t seconds = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
    tm local{};
    localtime_r(&seconds, &local);
    System.zoneResult = Platform::TIME_ZONE_ID_UNKNOWN;
    System.zone = {};
    System.zone.Bias = static_cast<Platform::LONG>(-local.tm_gmtoff / 60);
}

class Years : public ManagerTest {
protected:
    std::vector<TimePoint> CallsOf(const Case& row) {
        std::vector<TimePoint> calls;
        const ListenerPtr listener = NewObject<RecordingListener>();
        listener->onCall = [&](IActionSubscription&) {
            calls.push_back(System.clock);
            return S_OK;
        };
        TimePoint now = row.registered;
        System.clock = now;
        SubscriptionPtr subscription;
        EXPECT_EQ(manager_->SubscribeRegularAction(listener.Get(), &row.schedule, subscription.Address()), S_OK);
        EXPECT_EQ(subscription->Start(), S_OK);
        for (int cycle = 1; cycle <= row.cycles; ++cycle) {
            const auto jump = row.jumps.find(cycle);
            now += row.polling + (jump != row.jumps.end() ? jump->second : milliseconds::zero());
            System.clock = now;
            manager_->OnTimerEvent(now);
        }
        EXPECT_EQ(subscription->Unsubscribe(), S_OK);
        manager_->OnTimerEvent(now);
        manager_->OnTimerEvent(now);
        return calls;
    }
};

// While the clock runs steadily, each previewed run is delivered at the first cycle at or after it. The only other call
// is the second one of an interval that begins exactly at a cycle.
void ExpectPreviewed(const Case& row, const std::vector<TimePoint>& calls) {
    std::vector<TimePoint> previewed;
    for (const auto& run : Host::NextRuns(row.schedule, row.registered, static_cast<std::uint32_t>(row.calls + 1))) {
        EXPECT_TRUE(previewed.empty() || run.time > previewed.back());
        previewed.push_back(run.time);
    }
    auto run = previewed.begin();
    for (const TimePoint& call : calls) {
        if (run != previewed.begin() && call - row.polling == *std::prev(run)) continue;
        // Of several runs between two cycles only the last one is served.
        while (std::next(run) != previewed.end() && *std::next(run) <= call) ++run;
        ASSERT_GE(call, *run);
        ASSERT_LT(call - row.polling, *run);
        ASSERT_NE(++run, previewed.end());
    }
    EXPECT_GT(*run, row.registered + row.polling * row.cycles);
}

TEST_F(Years, MatchAnIndependentReferenceAndThePreview) {
    const auto cases = Cases();
    EXPECT_GE(cases.size(), 150u);
    for (const Case& row : cases) {
        SCOPED_TRACE(row.text);
        SetZone(row.zone, row.registered);
        const auto calls = CallsOf(row);
        ASSERT_EQ(calls.size(), row.calls);
        EXPECT_EQ(calls.empty() ? std::nullopt : std::optional(calls.front()), row.first);
        EXPECT_EQ(calls.empty() ? std::nullopt : std::optional(calls.back()), row.last);
        if (row.jumps.empty()) ExpectPreviewed(row, calls);
    }
}

}  // namespace
