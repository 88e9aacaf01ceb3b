#include "Host/Run/CommandLoop.h"

#include <algorithm>
#include <functional>

#include "Host/Base/Failure.h"
#include "Host/Base/UserFile.h"
#include "Host/Schedules/LocalTime.h"

namespace Host {

using Clock = std::chrono::steady_clock;

namespace {

// Between two looks at the module's log.
constexpr std::chrono::milliseconds LookInterval{200};

std::vector<TimedCommand> SortedByTime(std::vector<TimedCommand> commands) {
    std::ranges::stable_sort(commands, {}, &TimedCommand::after);
    return commands;
}

bool IsCommand(const WriteCommand& write) {
    return std::ranges::find(write.attributes, u"Command", &ConfigServer::TextAttribute::name) !=
           write.attributes.end();
}

bool IsBlank(const std::string& line) {
    return line.find_first_not_of(" \t\r") == line.npos;
}

}  // namespace

std::vector<RegistrationState> StatesOf(const Registrations& registrations, const TimePoint& now) {
    std::vector<RegistrationState> states;
    for (const auto& registration : registrations) states.push_back(registration->State(now));
    return states;
}

CommandLoop::CommandLoop(const AliveCounter& alive, const Registrations& registrations, const ServedTree& tree,
                         ModuleLog& log, Report& report)
    : alive_(alive), registrations_(registrations), tree_(tree), log_(log), report_(report) {}

void CommandLoop::RunUntilStopped(const RunOptions& options, const StopSignal& stop) {
    const auto start = Clock::now();
    const auto end = options.duration ? start + *options.duration : Clock::time_point::max();
    const std::vector<TimedCommand> scheduled = SortedByTime(options.commands);
    auto next = scheduled.begin();
    auto nextLook = start;
    // On a terminal the host shows what is typed, so that neither its calls nor its status line mix with that.
    std::function<void(const std::string&)> showTyped;
    if (report_.HasStatusLine()) showTyped = [this](const std::string& text) { report_.SetTypedLine(text); };
    TypedLines typedLines(std::move(showTyped));
    for (std::string line; !quit_;) {
        const auto nextCommand = next != scheduled.end() ? start + next->after : Clock::time_point::max();
        const auto event = typedLines.Wait(stop, std::min({nextCommand, nextLook, end}), line);
        if (event == TypedLines::Event::Stop || Clock::now() >= end) return;
        if (event == TypedLines::Event::Line) {
            if (report_.HasStatusLine()) report_.AddTypedLine(line);
            ParseAndCarryOut(line);
        } else if (nextCommand <= nextLook) {
            CarryOut((next++)->command);
        } else {
            log_.ReportNewLines();
            report_.RefreshStatusLine();
            nextLook = Clock::now() + LookInterval;
        }
    }
}

void CommandLoop::ReportFailureOf(const std::function<void()>& body) {
    try {
        body();
    } catch (const std::runtime_error& failure) {
        report_.AddMessage(failure.what() + std::string("\n"));
    }
}

void CommandLoop::ParseAndCarryOut(const std::string& line) {
    if (IsBlank(line)) return;
    ReportFailureOf([&] { CarryOut(ParseCommand(line)); });
}

void CommandLoop::CarryOut(const Command& command) {
    ReportFailureOf([&] { std::visit([this](const auto& chosen) { Execute(chosen); }, command); });
}

void CommandLoop::Execute(const WriteCommand& command) {
    const TimePoint now = CurrentTime();
    bool isHeard = false;
    for (const auto& registration : registrations_) isHeard |= registration->OnCommand(command.path, now);
    tree_.Write(command.path, command.attributes);
    if (!isHeard && IsCommand(command)) report_.AddUnheard(command.path, now);
}

void CommandLoop::Execute(const AliveCommand&) {
    report_.AddAlive(alive_.Count());
}

void CommandLoop::Execute(const StatusCommand&) {
    const TimePoint now = CurrentTime();
    report_.AddStatus(StatesOf(registrations_, now), now);
}

void CommandLoop::Execute(const TreeCommand& command) {
    const std::string xml = tree_.ToXml();
    if (command.file.empty()) {
        report_.AddTree(xml);
    } else {
        WriteOutputFile("tree", command.file, xml);
    }
}

void CommandLoop::Execute(const HelpCommand&) {
    report_.AddMessage(CommandHelp());
}

void CommandLoop::Execute(const QuitCommand&) {
    quit_ = true;
}

}  // namespace Host
