#include "Host/CommandLine/RunValues.h"

#include <filesystem>
#include <set>

#include "Common/Base/Text.h"
#include "Common/Settings/ModuleInfo.h"
#include "Host/Base/Number.h"
#include "Host/Run/CommandPoint.h"
#include "Host/Schedules/Duration.h"
#include "Host/Schedules/ScheduleRefusal.h"

namespace Host {

using namespace DataCollection::ActionManagement;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds DefaultPolling{100};
constexpr std::array<std::string_view, 2> Schedules{"every", "at"};

// The build puts the module beside the host, the installation into a folder of its own.
std::string DefaultModule() {
    const std::string directory = Harbor::ToUtf8(Harbor::ModuleDirectory(nullptr));
    const std::string beside = directory + HOST_MODULE;
    return std::filesystem::exists(beside) ? beside : directory + HOST_INSTALLED_MODULE;
}

std::string NameOf(const GivenValue& value, const TimedActionSettings& settings) {
    return value.name.value_or(value.option + " " + LabelOf(value.text, settings));
}

TimedActionSettings ReadSchedule(const GivenValue& value, ClockKind clock, const TimePoint& now) {
    const TimedActionSettings settings = ReadForm(value, [&](const std::string& text) {
        return value.option == "every" ? ParseRepeat(text) : ParseClockSchedule(text, clock, now);
    });
    if (const auto refusal = RefusalOf(settings)) throw BadInput(value.source + " " + value.text + ": " + *refusal);
    return settings;
}

ForcedActionConfig ReadWatch(const GivenValue& value, bool bit0) {
    auto point = Read(value, CommandPointForm, ParseCommandPoint);
    point.WithOptionBit0 = bit0;
    return point;
}

void RequireDistinctNames(const GivenValues& registrations) {
    std::set<std::string> names;
    for (const GivenValue& value : registrations) {
        if (!value.name || names.insert(*value.name).second) continue;
        throw BadInput(value.source + " " + value.text + ": another registration has the name \"" + *value.name + "\"");
    }
}

}  // namespace

RunOptions MakeRunOptions(const GivenValues& values, const TimePoint& now, Faults& faults) {
    RunOptions options{.modulePath = ModulePathOf(values), .polling = DefaultPolling};
    ClockKind clock = ClockKind::Utc;
    bool bit0 = false;
    faults.Collect([&] { clock = ClockOf(values); });
    faults.Collect([&] { bit0 = values.HasFlag("bit0"); });
    faults.Collect([&] { options.format = FormatOf(values); });
    if (const GivenValue* const polling = values.Find("polling")) {
        faults.Collect([&] {
            options.polling =
                milliseconds{Read(*polling, "a whole number of milliseconds below 2^32", ParseNumber<std::uint32_t>)};
        });
    }
    for (const GivenValue& value : values.Of(Schedules)) {
        faults.Collect([&] {
            const TimedActionSettings settings = ReadSchedule(value, clock, now);
            options.schedules.push_back({NameOf(value, settings), settings});
        });
    }
    for (const GivenValue& value : values.Of("watch")) {
        faults.Collect([&] {
            options.watches.push_back({value.name.value_or("watch " + value.text), ReadWatch(value, bit0)});
        });
    }
    faults.Collect([&] { RequireDistinctNames(values.Of(RegisteringOptions)); });
    for (const GivenValue& value : values.Of("do")) {
        faults.Collect([&] { options.commands.push_back(ParseTimedCommand(value.text, value.source)); });
    }
    if (const GivenValue* const duration = values.Find("duration")) {
        faults.Collect([&] { options.duration = ReadForm(*duration, ParseDuration).Length(); });
    }
    faults.ThrowIfAny();
    return options;
}

std::string ModulePathOf(const GivenValues& values) {
    const GivenValue* const path = values.Find("module");
    return path != nullptr ? path->text : DefaultModule();
}

OutputFormat FormatOf(const GivenValues& values) {
    return values.HasFlag("json") ? OutputFormat::Json : OutputFormat::Text;
}

ClockKind ClockOf(const GivenValues& values) {
    return values.HasFlag("local") ? ClockKind::Local : ClockKind::Utc;
}

std::string LabelOf(const std::string& text, const TimedActionSettings& settings) {
    return settings.IsLocalTime ? text + " local" : text;
}

}  // namespace Host
