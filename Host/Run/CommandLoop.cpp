#include "Host/Run/CommandLoop.h"

#include <algorithm>
#include <iostream>

#include "Host/Base/Failure.h"
#include "Host/Schedules/LocalTime.h"

namespace Host {

using Clock = std::chrono::steady_clock;

namespace {

constexpr std::chrono::seconds StatusInterval{1};

// Tells a failure and goes on.
template <class Body>
void Try(Body&& body) {
    try {
        body();
    } catch (const std::runtime_error& failure) {
        std::cerr << failure.what() << std::endl;
    }
}

std::vector<TimedCommand> InOrder(std::vector<TimedCommand> commands) {
    std::ranges::stable_sort(commands, {}, &TimedCommand::after);
    return commands;
}

bool IsBlank(const std::string& line) {
    return line.find_first_not_of(" \t\r") == line.npos;
}

}  // namespace

std::vector<RegistrationState> StatesOf(const Registrations& registrations) {
    std::vector<RegistrationState> states;
    for (const auto& registration : registrations) states.push_back(registration->State());
    return states;
}

CommandLoop::CommandLoop(const AliveCounter& alive, const Registrations& registrations, const ServedTree& tree,
                         Report& report)
    : alive_(alive), registrations_(registrations), tree_(tree), report_(report) {}

void CommandLoop::RunUntilStopped(const RunOptions& options, const StopSignal& stop) {
    const auto start = Clock::now();
    const auto end = options.duration ? start + *options.duration : Clock::time_point::max();
    const std::vector<TimedCommand> given = InOrder(options.commands);
    auto next = given.begin();
    auto nextStatus = report_.HasStatusLine() ? start : Clock::time_point::max();
    TypedLines typed;
    for (std::string line; !quit_;) {
        const auto nextCommand = next != given.end() ? start + next->after : Clock::time_point::max();
        const auto event = typed.Wait(stop, std::min({nextCommand, nextStatus, end}), line);
        if (event == TypedLines::Event::Stop || Clock::now() >= end) return;
        if (event == TypedLines::Event::Line) {
            ParseAndCarryOut(line);
        } else if (nextCommand <= nextStatus) {
            CarryOut((next++)->command);
        } else {
            report_.SetStatusLine(StatesOf(registrations_));
            nextStatus = Clock::now() + StatusInterval;
        }
    }
}

void CommandLoop::ParseAndCarryOut(const std::string& line) {
    if (IsBlank(line)) return;
    Try([&] { CarryOut(ParseCommand(line)); });
}

void CommandLoop::CarryOut(const Command& command) {
    Try([&] { std::visit([this](const auto& chosen) { Do(chosen); }, command); });
}

void CommandLoop::Do(const WriteCommand& command) {
    const TimePoint now = CurrentTime();
    for (const auto& registration : registrations_) registration->OnCommand(command.path, now);
    tree_.Write(command.path, command.attributes);
}

void CommandLoop::Do(const AliveCommand&) {
    report_.AddAlive(alive_.Count());
}

void CommandLoop::Do(const StatusCommand&) {
    report_.AddStatus(StatesOf(registrations_));
}

void CommandLoop::Do(const HelpCommand&) {
    std::cerr << CommandHelp() << std::flush;
}

void CommandLoop::Do(const QuitCommand&) {
    quit_ = true;
}

}  // namespace Host
