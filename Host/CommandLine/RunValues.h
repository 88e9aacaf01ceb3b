// The options of a run, made of the values that are written.
#pragma once

#include "Host/Base/Failure.h"
#include "Host/CommandLine/GivenValues.h"
#include "Host/Run/RunOptions.h"
#include "Host/Schedules/LocalTime.h"
#include "Host/Schedules/ScheduleText.h"

namespace Host {

// Returns what the values mean at `now`. Each value that is not valid, or that the module would refuse, is added to the
// faults; if there are any at the end, throws BadInput with all of them. Nothing to register is a fault.
[[nodiscard]] RunOptions MakeRunOptions(const GivenValues& values, const TimePoint& now, Faults& faults);

// These are used by the other commands, too.

// Parses one value, or throws BadInput with what was expected.
template <class Parse>
auto Read(const GivenValue& value, std::string_view expected, Parse parse) {
    auto parsed = parse(value.text);
    if (!parsed) throw InvalidValue(value.source, value.text, expected);
    return *parsed;
}

// Parses a duration or a schedule, or throws BadInput with what is wrong with it.
template <class Parse>
auto ReadForm(const GivenValue& value, Parse parse) {
    try {
        return parse(value.text);
    } catch (const BadForm& form) {
        throw InvalidValue(value.source, value.text, form);
    }
}

[[nodiscard]] std::string ModulePathOf(const GivenValues& values);
[[nodiscard]] OutputFormat FormatOf(const GivenValues& values);
[[nodiscard]] ClockKind ClockOf(const GivenValues& values);
// Names a schedule that was written as `text` and has no other name.
[[nodiscard]] std::string LabelOf(const std::string& text,
                                  const DataCollection::ActionManagement::TimedActionSettings& settings);

}  // namespace Host
