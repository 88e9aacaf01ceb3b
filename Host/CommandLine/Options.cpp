#include "Host/CommandLine/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>

#include "Common/Base/Text.h"
#include "Common/Settings/ModuleInfo.h"
#include "Host/Base/Failure.h"
#include "Host/Base/InputFile.h"
#include "Host/Base/Number.h"
#include "Host/CommandLine/ConfigFile.h"
#include "Host/CommandLine/HelpText.h"
#include "Host/Console/Environment.h"
#include "Host/Run/CommandPoint.h"
#include "Host/Schedules/Duration.h"
#include "Host/Schedules/LocalTime.h"
#include "Host/Schedules/ScheduleRefusal.h"
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
  ActionHost compare old.xml new.xml          does this change trigger a run?
  ActionHost log --severity WARN OrvActionManager.log
  ActionHost next 06:30:00,6h --local --zone Europe/Helsinki --from 2026-03-28T12:00:00Z
  ActionHost explain 90m                      what does it do, or why is it refused?

While it runs, it reads commands from standard input; type help for a list. SIGINT, SIGTERM and
SIGHUP stop it cleanly. The due time is computed with the module's own arithmetic, so the lateness
is exact to the clock's tick for --at, and too high by the duration of the registering call (well
below a millisecond) for --every. For --watch it is measured from the writing of the command.

Exit codes: 0 success; 1 a call or the output failed, objects were left alive, or a schedule is
refused (next, explain); 2 invalid input; 3 no trigger (compare).)";

// The values as they are written, before they are parsed.
struct Written {
    std::string module;
    std::string polling = "100";
    std::vector<std::string> every;
    std::vector<std::string> at;
    bool local = false;
    std::vector<std::string> watch;
    bool bit0 = false;
    std::vector<std::string> commands;
    std::string duration;
    bool json = false;

    std::string oldFile;
    std::string newFile;

    std::string log;
    std::string severity;
    std::string since;
    std::string until;
    std::string process;
    std::string last;
    std::string slow;
    bool follow = false;

    std::vector<std::string> schedules;
    std::string count = "5";
    std::string from;
    std::string zone;
};

// The build puts the module beside the host, the installation into a folder of its own.
std::string DefaultModule() {
    const std::string directory = Harbor::ToUtf8(Harbor::ModuleDirectory(nullptr));
    const std::string beside = directory + HOST_MODULE;
    return std::filesystem::exists(beside) ? beside : directory + HOST_INSTALLED_MODULE;
}

void AddValue(CLI::App& app, const std::string& name, std::string& value, const std::string& type,
              const std::string& help) {
    const auto isGiven = [](const std::string& text) { return text.empty() ? std::string("the value is empty") : ""; };
    app.add_option(name, value, InLines(help))->type_name(type)->check(isGiven);
}

void AddRepeatable(CLI::App& app, const std::string& name, std::vector<std::string>& values, const std::string& type,
                   const std::string& help) {
    app.add_option(name, values, InLines(help))->type_name(type)->allow_extra_args(false);
}

void AddModuleOption(CLI::App& app, Written& written) {
    AddValue(app, "--module", written.module, "PATH", "the module (default OrvActionManager.so beside this program)");
}

void AddJsonOption(CLI::App& app, Written& written) {
    app.add_flag("--json", written.json, "print one JSON object a line");
}

void AddRunOptions(CLI::App& app, Written& written) {
    AddModuleOption(app, written);
    AddValue(app, "--polling", written.polling, "MS",
             "pause of the worker between two cycles, in milliseconds (default 100)");
    AddRepeatable(app, "--every", written.every, "DURATION",
                  "a run in each interval, such as 500ms, 2s, 1h30m or 1d (repeatable)");
    AddRepeatable(app, "--at", written.at, "HH:MM:SS[,INTERVAL]",
                  "a first run at a time of day, then one in each interval (default 1d); +DURATION instead of the time "
                  "counts from now, less than a day (repeatable)");
    app.add_flag("--local", written.local, "times of --at are local instead of UTC");
    AddRepeatable(app, "--watch", written.watch, "PARENT/LEAF", "a command point (repeatable)");
    app.add_flag("--bit0", written.bit0, "set bit 0 in the options of the --watch subscriptions");
    AddRepeatable(app, "--do", written.commands, "\"DURATION COMMAND\"",
                  "carry out a command after that time, such as \"3s start Plant Line1\" (repeatable)");
    AddValue(app, "--duration", written.duration, "DURATION", "stop after that time");
    AddJsonOption(app, written);
    app.set_config(
           "--config", "",
           InLines("a file with these options, one a line as \"every = 500ms\"; the command line has precedence"))
        ->type_name("FILE");
    app.config_formatter(std::make_shared<ConfigFile>(app));
    app.set_version_flag("--version", "ActionHost " HOST_VERSION);
}

CLI::App& AddCompare(CLI::App& app, Written& written) {
    CLI::App& compare = *app.add_subcommand(
        "compare",
        InLines("ask both trigger strategies whether the change from one configuration tree to another triggers a run; "
                "the exit code is 0 if its items do, 3 if not"));
    AddModuleOption(compare, written);
    AddJsonOption(compare, written);
    compare.add_option("OLD", written.oldFile, "the old tree: a file with the text of a node dump")->required();
    compare.add_option("NEW", written.newFile, "the new tree")->required();
    return compare;
}

CLI::App& AddLog(CLI::App& app, Written& written) {
    CLI::App& log = *app.add_subcommand("log", "show the module's log file in UTF-8");
    log.add_option("FILE", written.log, "the log, or - for standard input")->required();
    AddValue(log, "--severity", written.severity, "NAME", "show only lines of that severity or a more severe one");
    AddValue(log, "--since", written.since, "TIME", "show only lines of that local time, such as 2026-03-29, or later");
    AddValue(log, "--until", written.until, "TIME", "show only lines of that local time or earlier");
    AddValue(log, "--pid", written.process, "ID", "show only lines of that process");
    AddValue(log, "-n,--last", written.last, "N", "show only the last N of these lines");
    log.add_flag("--follow", written.follow,
                 InLines("continue with lines that are written later, also to a new file of the same name"));
    AddValue(log, "--slow", written.slow, "N", "show the N slowest traced calls instead of the lines");
    AddJsonOption(log, written);
    return log;
}

void AddSchedules(CLI::App& app, Written& written) {
    app.add_option("SCHEDULE", written.schedules, "a value as for --every or --at (repeatable)")->required();
    app.add_flag("--local", written.local, "times of day are local instead of UTC");
}

CLI::App& AddNext(CLI::App& app, Written& written) {
    CLI::App& next = *app.add_subcommand("next", "preview schedules: list their runs, in UTC and in local time");
    AddSchedules(next, written);
    AddValue(next, "--count", written.count, "N", "the number of runs to list for each (default 5)");
    AddValue(next, "--from", written.from, "TIME", "the time of registration, in UTC (default now)");
    AddValue(next, "--zone", written.zone, "ZONE", "the local time zone, such as Europe/Helsinki");
    AddJsonOption(next, written);
    return next;
}

CLI::App& AddExplain(CLI::App& app, Written& written) {
    CLI::App& explain = *app.add_subcommand(
        "explain",
        InLines("describe in words what schedules do and which rules apply, or why the module refuses them"));
    AddSchedules(explain, written);
    return explain;
}

// Parses one value, or throws BadInput with what was expected.
template <class Parse>
auto Read(const std::string& option, const std::string& value, std::string_view expected, Parse parse) {
    auto parsed = parse(value);
    if (!parsed) throw InvalidValue(option, value, expected);
    return *parsed;
}

// Parses a duration or a schedule, or throws BadInput with what is wrong with it.
template <class Parse>
auto ReadForm(const std::string& option, const std::string& value, Parse parse) {
    try {
        return parse(value);
    } catch (const BadForm& form) {
        throw InvalidValue(option, value, form);
    }
}

ClockKind ClockOf(const Written& written) {
    return written.local ? ClockKind::Local : ClockKind::Utc;
}

std::string LabelOf(const std::string& text, const TimedActionSettings& settings) {
    return settings.IsLocalTime ? text + " local" : text;
}

// Throws BadInput for a schedule that the module would refuse, before anything is registered.
template <class Parse>
void ReadRunSchedules(RunOptions& options, const std::string& option, const std::vector<std::string>& values,
                      Parse parse) {
    for (const std::string& value : values) {
        const TimedActionSettings settings = ReadForm(option, value, parse);
        if (const auto refusal = RefusalOf(settings)) throw BadInput(option + " " + value + ": " + *refusal);
        options.schedules.push_back({LabelOf(option.substr(2) + " " + value, settings), settings});
    }
}

void ReadWatches(RunOptions& options, const Written& written) {
    for (const std::string& value : written.watch) {
        auto point = Read("--watch", value, CommandPointForm, ParseCommandPoint);
        point.WithOptionBit0 = written.bit0;
        options.watches.push_back({"watch " + value, point});
    }
}

std::string ModulePath(const Written& written) {
    return written.module.empty() ? DefaultModule() : written.module;
}

OutputFormat FormatOf(const Written& written) {
    return written.json ? OutputFormat::Json : OutputFormat::Text;
}

Options ReadRun(const Written& written) {
    RunOptions options;
    options.modulePath = ModulePath(written);
    options.polling = std::chrono::milliseconds{
        Read("--polling", written.polling, "a whole number of milliseconds below 2^32", ParseNumber<std::uint32_t>)};
    ReadRunSchedules(options, "--every", written.every, ParseRepeat);
    ReadRunSchedules(options, "--at", written.at, [&, now = CurrentTime()](const std::string& value) {
        return ParseClockSchedule(value, ClockOf(written), now);
    });
    ReadWatches(options, written);
    if (options.schedules.empty() && options.watches.empty()) {
        throw BadInput("nothing to register; use --every, --at or --watch, or see ActionHost --help for examples");
    }
    for (const std::string& command : written.commands) options.commands.push_back(ParseTimedCommand(command));
    if (!written.duration.empty()) {
        options.duration = ReadForm("--duration", written.duration, ParseDuration).Length();
    }
    options.format = FormatOf(written);
    return options;
}

Options ReadLog(const Written& written) {
    LogOptions options{.file = written.log, .follow = written.follow, .format = FormatOf(written)};
    if (!written.severity.empty()) {
        options.leastSevere = Read("--severity", written.severity, SeverityForm, ParseSeverity);
    }
    if (!written.since.empty()) options.since = Read("--since", written.since, LogTimeForm, ParseLogTime);
    if (!written.until.empty()) options.until = Read("--until", written.until, LogTimeForm, ParseLogTime);
    if (!written.process.empty()) {
        // The log has the low 16 bits of an id.
        options.process = static_cast<std::uint16_t>(
            Read("--pid", written.process, "a whole number below 2^32", ParseNumber<std::uint32_t>));
    }
    if (!written.last.empty()) {
        options.last = Read("--last", written.last, "a whole number below 2^32", ParseNumber<std::uint32_t>);
    }
    if (!written.slow.empty()) {
        options.slowestCalls = Read("--slow", written.slow, "a whole number below 2^32", ParseNumber<std::uint32_t>);
    }
    if (options.follow && options.slowestCalls) throw BadInput("--follow and --slow cannot be combined");
    if (options.last && options.slowestCalls) throw BadInput("--last and --slow cannot be combined");
    if (options.follow && options.file == "-") throw BadInput("--follow needs a file, not standard input");
    return options;
}

Options ReadCompare(const Written& written) {
    return CompareOptions{.modulePath = ModulePath(written),
                          .oldFile = written.oldFile,
                          .newFile = written.newFile,
                          .format = FormatOf(written)};
}

// The schedules of next and explain, as they are registered at `now`.
std::vector<Labelled<TimedActionSettings>> ReadSchedules(const Written& written, const TimePoint& now) {
    std::vector<Labelled<TimedActionSettings>> schedules;
    for (const std::string& text : written.schedules) {
        const auto settings = ReadForm(
            "SCHEDULE", text, [&](const std::string& value) { return ParseSchedule(value, ClockOf(written), now); });
        schedules.push_back({LabelOf(text, settings), settings});
    }
    return schedules;
}

Options ReadNext(const Written& written) {
    if (!written.zone.empty() && !SetLocalZone(written.zone)) {
        throw InvalidValue("--zone", written.zone, "the name of a time zone, such as Europe/Helsinki");
    }
    NextOptions options;
    options.from = written.from.empty() ? CurrentTime() : Read("--from", written.from, MomentForm, ParseMoment);
    options.count = Read("--count", written.count, "a whole number from 1 to 100000", [](const std::string& value) {
        const auto count = ParseNumber<std::uint32_t>(value);
        return count && *count >= 1 && *count <= 100'000 ? count : std::nullopt;
    });
    options.format = FormatOf(written);
    options.schedules = ReadSchedules(written, options.from);
    return options;
}

Options ReadExplain(const Written& written) {
    return ExplainOptions{.schedules = ReadSchedules(written, CurrentTime())};
}

// Throws the library's error as a message of one line that names the option.
[[noreturn]] void ThrowBadInput(const CLI::App& app, const CLI::ParseError& error) {
    if (dynamic_cast<const CLI::FileError*>(&error) != nullptr) {
        (void)OpenInputFile("--config", app.get_config_ptr()->as<std::string>());
    }
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
    Written written;
    CLI::App app(Description, "ActionHost");
    app.footer(Footer);
    AddRunOptions(app, written);
    CLI::App& compare = AddCompare(app, written);
    CLI::App& log = AddLog(app, written);
    CLI::App& next = AddNext(app, written);
    CLI::App& explain = AddExplain(app, written);
    for (CLI::App* const command : {&compare, &log, &next, &explain}) {
        command->footer("");
        for (const char* option : {"--polling", "--every", "--at", "--watch", "--do", "--duration", "--config"}) {
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
    if (compare) return ReadCompare(written);
    if (log) return ReadLog(written);
    if (next) return ReadNext(written);
    if (explain) return ReadExplain(written);
    return ReadRun(written);
}

}  // namespace Host
