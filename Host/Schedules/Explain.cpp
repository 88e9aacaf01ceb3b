#include "Host/Schedules/Explain.h"

#include <cstdio>
#include <iostream>

#include "Host/Base/Failure.h"
#include "Host/Schedules/ScheduleRefusal.h"

namespace Host {

using namespace DataCollection::ActionManagement;

namespace {

std::string ClockText(std::uint32_t secondOfDay) {
    char text[9];
    std::snprintf(text, sizeof(text), "%02u:%02u:%02u", secondOfDay / 3600 % 24, secondOfDay / 60 % 60,
                  secondOfDay % 60);
    return text;
}

std::string IntervalText(const TimedActionSettings& schedule) {
    return schedule.IntervalSeconds != 0 ? std::to_string(schedule.IntervalSeconds) + " s"
                                         : std::to_string(schedule.IntervalMilliseconds) + " ms";
}

void ExplainStart(const TimedActionSettings& schedule) {
    if (schedule.Type == TimedActionType::Repeat) {
        std::cout << "  Runs every " << IntervalText(schedule) << ", for the first time one interval after its "
                  << "registration.\n";
        return;
    }
    std::cout << "  Runs at " << ClockText(schedule.StartSeconds) << (schedule.IsLocalTime ? " local time" : " UTC")
              << ", and from there every " << IntervalText(schedule) << ".\n"
              << "  A start that is past at the registration, in its UTC day, moves to the next day.\n";
    if (!schedule.IsLocalTime) return;
    std::cout << "  The local time is turned into UTC once, by the offset that holds at the registration. Across a\n"
                 "  daylight-saving change the runs keep their UTC moments, so their local time moves, until the\n"
                 "  schedule is registered anew.\n"
                 "  West of Greenwich, where local evening is the next UTC day, the nearest start may be left out.\n";
}

constexpr char Rules[] =
    "Rules of all schedules\n"
    "  Intervals are counted from the first run, in UTC; a late call doesn't move the next one.\n"
    "  Each interval that is reached is one call. There is no catching up: intervals that pass while the process\n"
    "  sleeps, a call lasts or the clock jumps ahead are one call. After a jump back nothing runs until the clock\n"
    "  has come to the interval behind the last run.\n"
    "  A call comes at the first cycle of the worker at or after its moment: at most one polling interval late, and\n"
    "  the calls before it in that cycle.\n";

}  // namespace

int Explain(const ExplainOptions& options) {
    int code = ExitCode::Success;
    for (const auto& [label, schedule] : options.schedules) {
        std::cout << label << '\n';
        if (const auto refusal = RefusalOf(schedule)) {
            std::cout << "  " << *refusal << '\n';
            code = ExitCode::Failure;
        } else {
            ExplainStart(schedule);
        }
    }
    if (code == ExitCode::Success) std::cout << Rules;
    std::cout.flush();
    return std::cout ? code : ExitCode::Failure;
}

}  // namespace Host
