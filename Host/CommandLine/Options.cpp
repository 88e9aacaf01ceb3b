#include "Host/CommandLine/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "Host/Base/Failure.h"
#include "Host/Base/Number.h"
#include "Host/CommandLine/ConfigFile.h"
#include "Host/CommandLine/Generated.h"
#include "Host/CommandLine/HelpText.h"
#include "Host/CommandLine/RunValues.h"
#include "Host/Console/Environment.h"
#include "Host/Schedules/LocalTime.h"
#include "Host/Schedules/ScheduleText.h"

namespace Host {

using namespace DataCollection::ActionManagement;

namespace {

constexpr char Description[] =
    "Loads the module OrvActionManager, registers schedules and command points, and prints a line for\n"
    "each call: local time, registration, action, and how many milliseconds after its due time the call\n"
    "came.";

constexpr char Footer[] = R"(
Examples:
  ActionHost --every 500ms --every 2s --duration 10s
  ActionHost --at 07:30:00,12h --local        at 07:30 local time, then every 12 hours
  ActionHost --at +5s,3s                      in 5 s, then every 3 s
  ActionHost --watch Plant/Line1 --do "3s start Plant Line1" --duration 5s
  ActionHost --config demo.ini --json
  ActionHost check --config demo.ini          is it valid, and what would run first?
  ActionHost compare old.xml new.xml          does this change trigger a run?
  ActionHost log --severity WARN -n 20        what the module has reported in this place
  ActionHost next 06:30:00,6h --local --zone Europe/Helsinki --from 2026-03-28T12:00:00Z
  ActionHost explain 90m                      what does it do, or why is it refused?

While it runs, it reads commands from standard input; type help for a list. SIGINT, SIGTERM and
SIGHUP stop it cleanly. The due time is computed with the module's own arithmetic, so the lateness
is exact to the clock's tick for --at, and too high by the duration of the registering call (well
below a millisecond) for --every. For --watch it is measured from the writing of the command.

Exit codes: 0 success; 1 a call or the output failed, objects were left alive, or a schedule is
refused (next, explain); 2 invalid input; 3 no trigger (compare).)";

constexpr char ManualPageOption[] = "--print-manual-page";
constexpr char CompletionOption[] = "--print-bash-completion";

void AddValue(CLI::App& app, const std::string& name, const std::string& type, const std::string& help) {
    const auto isGiven = [](const std::string& text) { return text.empty() ? std::string("the value is empty") : ""; };
    app.add_option(name)->description(InLines(help))->type_name(type)->check(isGiven);
}

void AddRepeatable(CLI::App& app, const std::string& name, const std::string& type, const std::string& help) {
    app.add_option(name)
        ->description(InLines(help))
        ->type_name(type)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void AddFlag(CLI::App& app, const std::string& name, const std::string& help) {
    app.add_flag(name)->description(InLines(help));
}

void AddArgument(CLI::App& app, const std::string& name, const std::string& help) {
    app.add_option(name)->description(InLines(help))->required();
}

void AddModuleOption(CLI::App& app) {
    AddValue(app, "--module", "PATH", "the module (default " HOST_MODULE " beside this program)");
}

void AddJsonOption(CLI::App& app) {
    AddFlag(app, "--json", "print one JSON object a line");
}

void AddConfigOption(CLI::App& app, const std::string& help) {
    AddValue(app, "--config", "FILE", help);
    app.get_option("--config")->configurable(false);
}

void AddRunOptions(CLI::App& app) {
    AddModuleOption(app);
    AddValue(app, "--polling", "MS", "pause of the worker between two cycles, in milliseconds (default 100)");
    AddRepeatable(app, "--every", "DURATION", "a run in each interval, such as 500ms, 2s, 1h30m or 1d (repeatable)");
    AddRepeatable(app, "--at", "HH:MM:SS[,INTERVAL]",
                  "a first run at a time of day, then one in each interval (default 1d); +DURATION instead of the time "
                  "counts from now, less than a day (repeatable)");
    AddFlag(app, "--local", "times of --at are local instead of UTC");
    AddRepeatable(app, "--watch", "PARENT/LEAF", "a command point (repeatable)");
    AddFlag(app, "--bit0", "set bit 0 in the options of the --watch subscriptions");
    AddRepeatable(app, "--name", "NAME", "a name for the --every, --at or --watch before it (repeatable)");
    AddRepeatable(app, "--do", "\"DURATION COMMAND\"",
                  "carry out a command after that time, such as \"3s start Plant Line1\" (repeatable)");
    AddValue(app, "--duration", "DURATION", "stop after that time");
    AddJsonOption(app);
    AddConfigOption(app, "a file with these options, one a line as \"every = 500ms\"; the command line has precedence");
    app.set_version_flag("--version", "ActionHost " HOST_VERSION);
    // For the build, which installs what these print. Options without a group are not shown.
    for (const char* const option : {ManualPageOption, CompletionOption}) app.add_flag(option)->group("");
}

CLI::App& AddCompare(CLI::App& app) {
    CLI::App& compare = *app.add_subcommand(
        "compare",
        InLines("ask both trigger strategies whether the change from one configuration tree to another triggers a run; "
                "the exit code is 0 if its items do, 3 if not"));
    AddModuleOption(compare);
    AddJsonOption(compare);
    AddArgument(compare, "OLD", "the old tree: a file with the text of a node dump");
    AddArgument(compare, "NEW", "the new tree");
    return compare;
}

CLI::App& AddLog(CLI::App& app) {
    CLI::App& log = *app.add_subcommand("log", "show the module's log file in UTF-8");
    AddArgument(log, "FILE", "the log, or - for standard input (default where the module writes)");
    log.get_option("FILE")->required(false);
    AddModuleOption(log);
    AddValue(log, "--severity", "NAME", "show only lines of that severity or a more severe one");
    AddValue(log, "--since", "TIME", "show only lines of that local time, such as 2026-03-29, or later");
    AddValue(log, "--until", "TIME", "show only lines of that local time or earlier");
    AddValue(log, "--pid", "ID", "show only lines of that process");
    AddValue(log, "-n,--last", "N", "show only the last N of these lines");
    AddFlag(log, "--follow",
            "continue with lines that are written later, also to a new file of the same name, "
            "and wait for a file that does not exist");
    AddValue(log, "--slow", "N", "show the N slowest traced calls instead of the lines");
    AddJsonOption(log);
    return log;
}

void AddSchedules(CLI::App& app) {
    app.add_option("SCHEDULE")
        ->description("a value as for --every or --at (repeatable)")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args();
    AddFlag(app, "--local", "times of day are local instead of UTC");
}

void AddZoneOption(CLI::App& app) {
    AddValue(app, "--zone", "ZONE", "the local time zone, such as Europe/Helsinki");
}

CLI::App& AddCheck(CLI::App& app) {
    CLI::App& check = *app.add_subcommand(
        "check", InLines("validate a configuration file and show what it would run first, without loading the module"));
    AddConfigOption(check, "the configuration file");
    check.get_option("--config")->required();
    AddZoneOption(check);
    AddJsonOption(check);
    return check;
}

CLI::App& AddNext(CLI::App& app) {
    CLI::App& next = *app.add_subcommand("next", "preview schedules: list their runs, in UTC and in local time");
    AddSchedules(next);
    AddConfigOption(next, "preview also the schedules of this configuration file");
    AddValue(next, "--count", "N", "the number of runs to list for each (default 5)");
    AddValue(next, "--from", "TIME", "the time of registration, in UTC (default now)");
    AddZoneOption(next);
    AddJsonOption(next);
    return next;
}

CLI::App& AddExplain(CLI::App& app) {
    CLI::App& explain = *app.add_subcommand(
        "explain",
        InLines("describe in words what schedules do and which rules apply, or why the module refuses them"));
    AddSchedules(explain);
    explain.get_option("SCHEDULE")->required();
    AddZoneOption(explain);
    AddJsonOption(explain);
    return explain;
}

CLI::App& AddSettings(CLI::App& app) {
    CLI::App& settings = *app.add_subcommand(
        "settings", InLines("show each setting of the module with its value and where that comes from, as the module "
                            "reads it in this program, and the path of its log"));
    AddModuleOption(settings);
    AddJsonOption(settings);
    return settings;
}

std::optional<std::uint32_t> ReadNumber(const GivenValues& values, std::string_view option) {
    const GivenValue* const value = values.Find(option);
    if (value == nullptr) return std::nullopt;
    return Read(*value, "a whole number below 2^32", ParseNumber<std::uint32_t>);
}

Options ReadRun(const CLI::App& app) {
    GivenValues values(app);
    Faults faults;
    if (const GivenValue* const file = values.Find("config")) {
        values.AddMissing(ReadConfigFile(file->text, app, faults));
    }
    RunOptions options = MakeRunOptions(values, CurrentTime(), faults);
    if (options.schedules.empty() && options.watches.empty()) {
        throw BadInput("nothing to register; use --every, --at or --watch, or see ActionHost --help for examples");
    }
    return options;
}

// Returns the run that a configuration file describes. `app` has the options of a run.
RunOptions ReadRunOfFile(const CLI::App& app, const std::string& file, const TimePoint& now) {
    Faults faults;
    const GivenValues values = ReadConfigFile(file, app, faults);
    RunOptions options = MakeRunOptions(values, now, faults);
    if (options.schedules.empty() && options.watches.empty()) {
        throw BadInput(file + ": nothing to register; expected every, at or watch");
    }
    return options;
}

void SetZone(const GivenValues& values) {
    const auto* const zone = values.Find("zone");
    if (zone == nullptr) return;
    if (!HasZoneDatabase())
        throw BadInput("--zone: this system has no database of time zones; set the zone of the system");
    if (SetLocalZone(zone->text)) return;
    throw InvalidValue(zone->source, zone->text, "the name of a time zone, such as Europe/Helsinki");
}

Options ReadCheck(const CLI::App& app, const GivenValues& values) {
    SetZone(values);
    const std::string& file = values.Find("config")->text;
    const TimePoint now = CurrentTime();
    CheckOptions options{.file = file, .run = ReadRunOfFile(app, file, now), .now = now};
    if (values.HasFlag("json")) options.run.format = OutputFormat::Json;
    return options;
}

Options ReadLog(const GivenValues& values) {
    const auto* const file = values.Find("FILE");
    LogOptions options{.file = file != nullptr ? file->text : std::string(),
                       .modulePath = ModulePathOf(values),
                       .last = ReadNumber(values, "last"),
                       .slowestCalls = ReadNumber(values, "slow"),
                       .follow = values.HasFlag("follow"),
                       .format = FormatOf(values)};
    if (const auto* const severity = values.Find("severity")) {
        options.leastSevere = Read(*severity, SeverityForm, ParseSeverity);
    }
    if (const auto* const since = values.Find("since")) options.since = Read(*since, LogTimeForm, ParseLogTime);
    if (const auto* const until = values.Find("until")) options.until = Read(*until, LogTimeForm, ParseLogTime);
    // The log has the low 16 bits of an id.
    if (const auto process = ReadNumber(values, "pid")) options.process = static_cast<std::uint16_t>(*process);
    if (options.follow && options.slowestCalls) throw BadInput("--follow and --slow cannot be combined");
    if (options.last && options.slowestCalls) throw BadInput("--last and --slow cannot be combined");
    if (options.follow && options.file == "-") throw BadInput("--follow needs a file, not standard input");
    return options;
}

Options ReadCompare(const GivenValues& values) {
    return CompareOptions{.modulePath = ModulePathOf(values),
                          .oldFile = values.Find("OLD")->text,
                          .newFile = values.Find("NEW")->text,
                          .format = FormatOf(values)};
}

// The schedules of next and explain, as they are registered at `now`.
std::vector<Labelled<TimedActionSettings>> ReadSchedules(const GivenValues& values, const TimePoint& now) {
    std::vector<Labelled<TimedActionSettings>> schedules;
    for (const GivenValue& value : values.Of("SCHEDULE")) {
        const auto settings =
            ReadForm(value, [&](const std::string& text) { return ParseSchedule(text, ClockOf(values), now); });
        schedules.push_back({LabelOf(value.text, settings), settings});
    }
    return schedules;
}

Options ReadNext(const CLI::App& app, const GivenValues& values) {
    SetZone(values);
    const auto* const from = values.Find("from");
    NextOptions options{.from = from != nullptr ? Read(*from, MomentForm, ParseMoment) : CurrentTime(),
                        .format = FormatOf(values)};
    if (const auto* const count = values.Find("count")) {
        options.count = Read(*count, "a whole number from 1 to 100000", [](const std::string& text) {
            const auto number = ParseNumber<std::uint32_t>(text);
            return number && *number >= 1 && *number <= 100'000 ? number : std::nullopt;
        });
    }
    options.schedules = ReadSchedules(values, options.from);
    if (const auto* const file = values.Find("config")) {
        std::ranges::copy(ReadRunOfFile(app, file->text, options.from).schedules,
                          std::back_inserter(options.schedules));
    }
    if (options.schedules.empty()) throw BadInput("no schedule to preview; see ActionHost next --help");
    return options;
}

Options ReadExplain(const GivenValues& values) {
    SetZone(values);
    const TimePoint now = CurrentTime();
    return ExplainOptions{.schedules = ReadSchedules(values, now), .now = now, .format = FormatOf(values)};
}

Options ReadSettings(const GivenValues& values) {
    return SettingsOptions{.modulePath = ModulePathOf(values), .format = FormatOf(values)};
}

// The values of a command, and those of the options before it that it has, too.
GivenValues ValuesOf(const CLI::App& app, const CLI::App& command) {
    GivenValues values(command);
    values.AddMissing(GivenValues(app));
    return values;
}

// Throws the library's error as a message of one line that names the option.
[[noreturn]] void ThrowBadInput(const CLI::App& app, const CLI::ParseError& error) {
    std::string text = error.what();
    std::ranges::replace(text, '\n', ' ');
    for (const std::string& argument : app.remaining(/*recurse=*/true)) {
        if (const auto meant = SimilarOption(app, argument)) {
            throw BadInput(argument + " is not an option; did you mean " + *meant + "? See ActionHost --help");
        }
    }
    throw BadInput(text + "; see ActionHost --help");
}

// "help" alone, or before or after the name of a command, is the same as --help.
std::vector<std::string> Arguments(int argc, const char* const* argv) {
    std::vector<std::string> arguments = ProgramArguments(argc, argv);
    const auto help = std::ranges::find(arguments, "help");
    const bool isOnlyHelp = arguments.size() <= 2 && help != arguments.end();
    if (isOnlyHelp) {
        arguments.erase(help);
        arguments.emplace_back("--help");
    }
    return arguments;
}

}  // namespace

Options ParseOptions(int argc, const char* const* argv) {
    CLI::App app(Description, "ActionHost");
    app.allow_windows_style_options(false);  // "/data/x.ini" is a path on every system
    app.footer(Footer);
    AddRunOptions(app);
    CLI::App& check = AddCheck(app);
    CLI::App& compare = AddCompare(app);
    CLI::App& log = AddLog(app);
    CLI::App& next = AddNext(app);
    CLI::App& explain = AddExplain(app);
    CLI::App& settings = AddSettings(app);
    for (CLI::App* const command : {&check, &compare, &log, &next, &explain, &settings}) {
        command->footer("");
        for (const char* option :
             {"--polling", "--every", "--at", "--watch", "--bit0", "--name", "--do", "--duration", "--config"}) {
            command->excludes(app.get_option(option));
        }
    }
    app.require_subcommand(0, 1);
    try {
        std::vector<std::string> arguments = Arguments(argc, argv);
        std::ranges::reverse(arguments);  // the order that the library takes
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        return ShowText{app.help()};
    } catch (const CLI::CallForVersion& version) {
        return ShowText{version.what() + std::string("\n")};
    } catch (const CLI::ParseError& error) {
        ThrowBadInput(app, error);
    }
    if (app.count(ManualPageOption) != 0) return ShowText{ManualPage(app, HOST_VERSION)};
    if (app.count(CompletionOption) != 0) return ShowText{BashCompletion(app)};
    if (check) return ReadCheck(app, ValuesOf(app, check));
    if (compare) return ReadCompare(ValuesOf(app, compare));
    if (log) return ReadLog(ValuesOf(app, log));
    if (next) return ReadNext(app, ValuesOf(app, next));
    if (explain) return ReadExplain(ValuesOf(app, explain));
    if (settings) return ReadSettings(ValuesOf(app, settings));
    return ReadRun(app);
}

}  // namespace Host
