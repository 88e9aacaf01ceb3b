#include "Host/Run/Check.h"

#include <iomanip>
#include <iostream>

#include "Host/Base/Failure.h"
#include "Host/Base/Json.h"
#include "Host/Schedules/Duration.h"
#include "Host/Schedules/LocalTime.h"
#include "Schedules/Schedule.h"

namespace Host {

using namespace DataCollection::ActionManagement;
using std::chrono::milliseconds;

namespace {

void Print(OutputFormat format, const std::string& registration, const std::optional<TimePoint>& firstRun) {
    if (format == OutputFormat::Json) {
        std::cout << JsonLine({{"registration", registration},
                               {"firstUtc", JsonOrNull(firstRun, UtcTimeText)},
                               {"firstLocal", JsonOrNull(firstRun, IsoTimeText)}});
        return;
    }
    constexpr int registrationWidth = 28;
    std::cout << "  " << std::left << std::setw(registrationWidth) << registration << "  "
              << (firstRun ? UtcTimeText(*firstRun) + "  " + IsoTimeText(*firstRun) : "on command") << '\n';
}

}  // namespace

int Check(const CheckOptions& options) {
    const RunOptions& run = options.run;
    WarnOfPolling(run);
    if (run.format == OutputFormat::Text) {
        std::cout << options.file << " is valid; with a cycle every " << DurationText(run.polling)
                  << ", the first calls would be due at\n";
    }
    for (const auto& [label, settings] : run.schedules) {
        Print(run.format, label, FirstRunOf(settings, options.now, LocalBias(options.now)).time);
    }
    for (const auto& [label, config] : run.watches) Print(run.format, label, std::nullopt);
    return ExitCode::Success;
}

void WarnOfPolling(const RunOptions& options) {
    if (options.polling == milliseconds::zero()) {
        std::cerr << "ActionHost: warning: with --polling 0 the worker never pauses and uses a whole core\n";
    }
    for (const auto& [label, settings] : options.schedules) {
        if (options.polling <= IntervalOf(settings)) continue;
        std::cerr << "ActionHost: warning: --polling " << options.polling.count() << " is longer than the interval of '"
                  << label << "': intervals that pass between two cycles are merged into one call\n";
    }
}

}  // namespace Host
