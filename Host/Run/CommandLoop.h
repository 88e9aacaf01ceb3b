// Carries out the commands that are typed and those that were given beforehand, until it is time to end.
#pragma once

#include <memory>
#include <span>

#include "Host/Console/StandardInput.h"
#include "Host/Run/Registration.h"
#include "Host/Run/RunOptions.h"
#include "Host/Run/ServedTree.h"

namespace Host {

using Registrations = std::vector<std::unique_ptr<Registration>>;

[[nodiscard]] std::vector<RegistrationState> StatesOf(const Registrations& registrations);

// Used by the host's main thread.
class CommandLoop {
public:
    CommandLoop(const AliveCounter& alive, const Registrations& registrations, const ServedTree& tree, Report& report);

    // Returns at the wish to stop, at the end of the duration, or at the command quit. A command that fails is told on
    // standard error, and nothing else happens.
    void RunUntilStopped(const RunOptions& options, const StopSignal& stop);

private:
    void ParseAndCarryOut(const std::string& line);
    void CarryOut(const Command& command);
    void Do(const WriteCommand& command);
    void Do(const AliveCommand&);
    void Do(const StatusCommand&);
    void Do(const HelpCommand&);
    void Do(const QuitCommand&);

    const AliveCounter& alive_;
    const Registrations& registrations_;
    const ServedTree& tree_;
    Report& report_;
    bool quit_ = false;
};

}  // namespace Host
