// Durations, schedules and command points: an accepted text is written again and accepted as the same.
#include "Fuzzing.h"
#include "Host/Run/CommandPoint.h"
#include "Host/Schedules/LocalTime.h"
#include "Host/Schedules/ScheduleText.h"

using namespace DataCollection::ActionManagement;

namespace {

std::string Interval(const TimedActionSettings& settings) {
    REQUIRE(settings.IntervalSeconds == 0 || settings.IntervalMilliseconds == 0);
    return settings.IntervalSeconds != 0 ? std::to_string(settings.IntervalSeconds) + "s"
                                         : std::to_string(settings.IntervalMilliseconds) + "ms";
}

bool Same(const TimedActionSettings& a, const TimedActionSettings& b) {
    return a.StartSeconds == b.StartSeconds && a.IsLocalTime == b.IsLocalTime &&
           a.IntervalSeconds == b.IntervalSeconds && a.IntervalMilliseconds == b.IntervalMilliseconds &&
           a.Type == b.Type;
}

void CheckRepeat(std::string_view text) {
    const auto repeat = Host::ParseRepeat(text);
    const auto duration = Host::ParseDuration(text);
    REQUIRE(repeat.has_value() == duration.has_value());
    if (!repeat) return;
    REQUIRE(*duration ==
            std::chrono::seconds{repeat->IntervalSeconds} + std::chrono::milliseconds{repeat->IntervalMilliseconds});
    REQUIRE(Same(*Host::ParseRepeat(Interval(*repeat)), *repeat));
}

void CheckClockSchedule(std::string_view text, std::optional<std::int32_t> bias) {
    const auto schedule = Host::ParseClockSchedule(text, bias, Host::CurrentTime());
    if (!schedule) return;
    const std::uint32_t start = schedule->StartSeconds;
    REQUIRE(start < 24 * 3600 && schedule->IsLocalTime == bias.has_value());
    char clock[16];
    std::snprintf(clock, sizeof clock, "%02u:%02u:%02u,", start / 3600, start / 60 % 60, start % 60);
    REQUIRE(Same(*Host::ParseClockSchedule(clock + Interval(*schedule), bias, Host::CurrentTime()), *schedule));
}

void CheckWatchPoint(std::string_view text) {
    const auto point = Host::ParseCommandPoint(text);
    if (point) REQUIRE(point->ParentName + u"/" + point->LeafName == Harbor::FromUtf8(text));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = Fuzzing::AsBytes(data, size);
    CheckRepeat(text);
    for (const std::optional<std::int32_t> bias : {std::optional<std::int32_t>(), {0}, {-14 * 3600}, {12 * 3600}}) {
        CheckClockSchedule(text, bias);
    }
    CheckWatchPoint(text);
    return 0;
}
