// Durations, schedules and command points: an accepted text is written again and accepted as the same.
#include "Fuzzing.h"
#include "Host/Base/Failure.h"
#include "Host/Run/CommandPoint.h"
#include "Host/Schedules/Duration.h"
#include "Host/Schedules/LocalTime.h"
#include "Host/Schedules/ScheduleText.h"

using namespace DataCollection::ActionManagement;

namespace {

// The interval as a text in the unit of its field.
std::string Interval(const TimedActionSettings& settings) {
    REQUIRE(settings.IntervalSeconds == 0 || settings.IntervalMilliseconds == 0);
    return settings.IntervalMilliseconds == 0 ? std::to_string(settings.IntervalSeconds) + "s"
                                              : std::to_string(settings.IntervalMilliseconds) + "ms";
}

// Nothing if the parser refuses the text.
template <class Parse>
auto Accepted(Parse parse) -> std::optional<decltype(parse())> {
    try {
        return parse();
    } catch (const Host::BadForm&) {
        return std::nullopt;
    }
}

bool Same(const TimedActionSettings& a, const TimedActionSettings& b) {
    return a.StartSeconds == b.StartSeconds && a.IsLocalTime == b.IsLocalTime &&
           a.IntervalSeconds == b.IntervalSeconds && a.IntervalMilliseconds == b.IntervalMilliseconds &&
           a.Type == b.Type;
}

void CheckRepeat(std::string_view text) {
    const auto repeat = Accepted([&] { return Host::ParseRepeat(text); });
    if (!repeat) return;
    const auto length = Host::ParseDuration(text).Length();
    REQUIRE(length ==
            std::chrono::seconds{repeat->IntervalSeconds} + std::chrono::milliseconds{repeat->IntervalMilliseconds});
    REQUIRE(Same(Host::ParseRepeat(Interval(*repeat)), *repeat));
    REQUIRE(Host::ParseDuration(Host::DurationText(length)).Length() == length);
}

void CheckClockSchedule(std::string_view text, Host::ClockKind clock) {
    const auto now = Host::CurrentTime();
    const auto schedule = Accepted([&] { return Host::ParseClockSchedule(text, clock, now); });
    if (!schedule) return;
    REQUIRE(schedule->StartSeconds < 24 * 3600);
    const auto writtenClock = schedule->IsLocalTime ? Host::ClockKind::Local : Host::ClockKind::Utc;
    const std::string written = Host::StartText(*schedule) + "," + Interval(*schedule);
    REQUIRE(Same(Host::ParseClockSchedule(written, writtenClock, now), *schedule));
}

void CheckWatchPoint(std::string_view text) {
    const auto point = Host::ParseCommandPoint(text);
    if (point) REQUIRE(point->ParentName + u"/" + point->LeafName == Harbor::FromUtf8(text));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = Fuzzing::AsBytes(data, size);
    CheckRepeat(text);
    CheckClockSchedule(text, Host::ClockKind::Utc);
    CheckClockSchedule(text, Host::ClockKind::Local);
    CheckWatchPoint(text);
    return 0;
}
