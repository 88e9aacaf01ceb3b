#include "Host/Run/Run.h"

#include <iostream>

#include "Common/Nodes/ACNode.h"
#include "Harbor/Configurable.h"
#include "Harbor/Module.h"
#include "Host/Base/Failure.h"
#include "Host/Base/UserFile.h"
#include "Host/Run/Check.h"
#include "Host/Run/CommandLoop.h"
#include "Host/Run/ScheduleRegistration.h"
#include "Host/Run/WatchRegistration.h"
#include "Host/Schedules/LocalTime.h"
#include "Host/Settings/ModuleSettings.h"
#include "Platform/Process.h"

namespace Host {

using namespace DataCollection::ActionManagement;
using namespace Harbor;
using std::chrono::milliseconds;

namespace {

struct Outcome {
    std::vector<RegistrationState> registrations;
    AliveObjects alive;
};

Registrations MakeRegistrations(const RunOptions& options, Report& report) {
    Registrations registrations;
    for (const auto& [label, settings] : options.schedules) {
        registrations.push_back(std::make_unique<ScheduleRegistration>(label, settings, report));
    }
    for (const auto& [label, config] : options.watches) {
        registrations.push_back(std::make_unique<WatchRegistration>(label, config, report));
    }
    return registrations;
}

void Configure(IActionManager& manager, milliseconds polling) {
    const auto value = static_cast<std::uint32_t>(polling.count());
    ACNode config;
    ThrowIfFailed(AcnCreateNode(u"ActionManager", nullptr, config.Receive()), "AcnCreateNode");
    ThrowIfFailed(
        AcnSetAttribute(config.Handle(), u"PollingIntervalInMilliseconds", AcnTypeUInt32, &value, sizeof(value)),
        "AcnSetAttribute");
    ComponentPtr<IConfigurable> configurable;
    ThrowIfFailed(ComponentPtr(&manager).QueryTo(configurable), "QueryInterface");
    ThrowIfFailed(configurable->Configure(config.Handle()), "Configure");
}

// The worker removes unsubscribed objects in its next two cycles. Nothing depends on that, so the wait is skipped if
// the polling interval is too long.
void WaitForLastCycles(IComponentsModule& module, milliseconds polling) {
    constexpr std::uint32_t onlyManager = 1;
    constexpr milliseconds longest{3000};
    constexpr milliseconds step{5};
    if (polling * 2 > longest) return;
    const auto until = std::chrono::steady_clock::now() + longest;
    while (CountObjects(module) > onlyManager && std::chrono::steady_clock::now() < until) {
        Platform::Sleep(static_cast<Platform::DWORD>(step.count()));
    }
}

std::vector<RegistrationState> Serve(const Module& module, const AliveCounter& alive, const RunOptions& options,
                                     const StopSignal& stop, ModuleLog& log, Report& report) {
    const ServedTree tree;
    // Declared before the manager: the worker calls the registrations until the manager is gone.
    const Registrations registrations = MakeRegistrations(options, report);
    report.ShowStatusOf([&registrations] { return StatesOf(registrations, CurrentTime()); });
    const auto manager = Create<IActionManager>(module, ActionManagerClassId);
    Configure(*manager.Get(), options.polling);
    for (const auto& registration : registrations) registration->Subscribe(*manager.Get());
    report.AddMessage("Registrations: " + std::to_string(registrations.size()) +
                      "; type help for a list of commands, Ctrl-C to stop\n");

    CommandLoop(alive, registrations, tree, log, report).RunUntilStopped(options, stop);

    for (const auto& registration : registrations) registration->Unsubscribe();
    WaitForLastCycles(module.Get(), options.polling);
    report.RemoveStatusLine();
    return StatesOf(registrations, CurrentTime());
}

Outcome LoadServeAndUnload(const RunOptions& options, const StopSignal& stop, Report& report) {
    AliveCounter::EnableTracking();
    const Module module = Module::Load(PathOf(options.modulePath));
    const AliveCounter alive(module);
    ModuleLog log(LogFileOf(module.Handle()), report);
    Outcome outcome{Serve(module, alive, options, stop, log, report), {}};
    outcome.alive = alive.Count();
    log.ReportNewLines();
    return outcome;
}

}  // namespace

int Run(const RunOptions& options) {
    IgnoreBrokenPipes();
    WarnOfPolling(options);
    const StopSignal stop;
    ConsoleOutput output(std::cout, std::cerr, TerminalOfOutput(), [&stop] { stop.Request(); });
    Report report(output, options.format);
    const Outcome outcome = LoadServeAndUnload(options, stop, report);
    report.AddSummary(outcome.registrations);
    report.AddAlive(outcome.alive);
    return outcome.alive.None() ? ExitCode::Success : ExitCode::Failure;
}

}  // namespace Host
