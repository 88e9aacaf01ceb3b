// Carries out the commands that are typed and those of the command line, until the host is to stop.
#pragma once

#include <functional>
#include <memory>
#include <span>

#include "Host/Console/TypedLines.h"
#include "Host/Run/ModuleLog.h"
#include "Host/Run/Registration.h"
#include "Host/Run/RunOptions.h"
#include "Host/Run/ServedTree.h"

namespace Host {

using Registrations = std::vector<std::unique_ptr<Registration>>;

[[nodiscard]] std::vector<RegistrationState> StatesOf(const Registrations& registrations, const TimePoint& now);

// Used by the host's main thread.
class CommandLoop {
public:
    CommandLoop(const AliveCounter& alive, const Registrations& registrations, const ServedTree& tree, ModuleLog& log,
                Report& report);

    // Returns on a request to stop, at the end of the duration, or on the command quit. A command that fails is
    // reported on standard error and changes nothing else.
    void RunUntilStopped(const RunOptions& options, const StopSignal& stop);

private:
    void ReportFailureOf(const std::function<void()>& body);
    void ParseAndCarryOut(const std::string& line);
    void CarryOut(const Command& command);
    void Execute(const WriteCommand& command);
    void Execute(const AliveCommand&);
    void Execute(const StatusCommand&);
    void Execute(const TreeCommand& command);
    void Execute(const HelpCommand&);
    void Execute(const QuitCommand&);

    const AliveCounter& alive_;
    const Registrations& registrations_;
    const ServedTree& tree_;
    ModuleLog& log_;
    Report& report_;
    bool quit_ = false;
};

}  // namespace Host
