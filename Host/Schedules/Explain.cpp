#include "Host/Schedules/Explain.h"

#include <algorithm>
#include <functional>
#include <iostream>

#include "Host/Base/Failure.h"
#include "Host/Base/Json.h"
#include "Host/Schedules/Duration.h"
#include "Host/Schedules/LocalTime.h"
#include "Host/Schedules/ScheduleRefusal.h"
#include "Host/Schedules/ScheduleText.h"
#include "Schedules/Schedule.h"

namespace Host {

using namespace DataCollection::ActionManagement;

namespace {

constexpr char LocalTimeRules[] =
    "  The local time is converted to UTC once, with the offset in effect at the registration. After a\n"
    "  daylight-saving change the runs keep their UTC times, so their local times shift by the change until the\n"
    "  schedule is registered again.\n"
    "  West of Greenwich, where the local evening belongs to the next UTC day, the nearest start may be skipped.\n";

constexpr char CommonRules[] =
    "Rules for all schedules\n"
    "  Intervals are counted from the first run, in UTC; a late call does not delay the next one.\n"
    "  Each interval that is reached causes one call. Missed calls are not made up for: all intervals that pass while\n"
    "  the process sleeps, while a call runs, or when the clock jumps forward cause a single call. After the clock\n"
    "  jumps back, no call is made until it reaches the interval after that of the last call.\n"
    "  A call is made in the first cycle of the worker at or after its due time: late by at most one polling interval\n"
    "  and the duration of the calls before it in that cycle.\n";

TimePoint FirstRun(const TimedActionSettings& schedule, const TimePoint& now) {
    return FirstRunOf(schedule, now, LocalBias(now)).time;
}

void ExplainSchedule(const TimedActionSettings& schedule, const TimePoint& now) {
    const TimePoint first = FirstRun(schedule, now);
    if (schedule.Type == TimedActionType::Repeat) {
        std::cout << "  Runs every " << DurationText(IntervalOf(schedule))
                  << ". The first run is one interval after the registration.\n";
    } else {
        std::cout
            << "  Runs at " << StartText(schedule) << (schedule.IsLocalTime ? " local time" : " UTC") << ", then every "
            << DurationText(IntervalOf(schedule)) << ".\n"
            << "  If that time has passed in the UTC day of the registration, the first run is on the next day.\n";
    }
    std::cout << "  Registered now, the first run is at " << UtcTimeText(first) << ", local time "
              << LocalTimeText(first) << ".\n";
    if (schedule.IsLocalTime) std::cout << LocalTimeRules;
}

Json ToJson(const std::string& label, const TimedActionSettings& schedule, const TimePoint& now) {
    const bool isRepeat = schedule.Type == TimedActionType::Repeat;
    const auto refusal = RefusalOf(schedule);
    const auto first = refusal ? std::nullopt : std::optional(FirstRun(schedule, now));
    return {{"schedule", label},
            {"refusal", JsonOrNull(refusal, std::identity())},
            {"start", isRepeat ? Json() : Json(StartText(schedule))},
            {"localTime", schedule.IsLocalTime},
            {"intervalMs", IntervalOf(schedule) / std::chrono::milliseconds{1}},
            {"firstUtc", JsonOrNull(first, UtcTimeText)},
            {"firstLocal", JsonOrNull(first, IsoTimeText)}};
}

void ExplainInText(const ExplainOptions& options) {
    for (const auto& [label, schedule] : options.schedules) {
        std::cout << label << '\n';
        if (const auto refusal = RefusalOf(schedule)) {
            std::cout << "  " << *refusal << '\n';
        } else {
            ExplainSchedule(schedule, options.now);
        }
    }
}

}  // namespace

int Explain(const ExplainOptions& options) {
    const bool anyRefused = std::ranges::any_of(
        options.schedules, [](const auto& schedule) { return RefusalOf(schedule.value).has_value(); });
    if (options.format == OutputFormat::Json) {
        for (const auto& [label, schedule] : options.schedules) {
            std::cout << JsonLine(ToJson(label, schedule, options.now));
        }
    } else {
        ExplainInText(options);
        if (!anyRefused) std::cout << CommonRules;
    }
    return anyRefused ? ExitCode::Failure : ExitCode::Success;
}

}  // namespace Host
