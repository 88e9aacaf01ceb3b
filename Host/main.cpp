#include <iostream>
#include <sstream>

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"
#include "Host/Base/Failure.h"
#include "Host/CommandLine/Options.h"
#include "Host/Compare/Compare.h"
#include "Host/Console/Terminal.h"
#include "Host/Log/ShowLog.h"
#include "Host/Run/Check.h"
#include "Host/Run/Run.h"
#include "Host/Schedules/Explain.h"
#include "Host/Schedules/NextRuns.h"
#include "Host/Settings/ShowSettings.h"

namespace {

using namespace Host;

int Execute(const RunOptions& options) {
    return Run(options);
}
int Execute(const CheckOptions& options) {
    return Check(options);
}
int Execute(const CompareOptions& options) {
    return Compare(options);
}
int Execute(const LogOptions& options) {
    return ShowLog(options);
}
int Execute(const NextOptions& options) {
    return ShowNextRuns(options);
}
int Execute(const ExplainOptions& options) {
    return Explain(options);
}
int Execute(const SettingsOptions& options) {
    return ShowSettings(options);
}
int Execute(const ShowText& show) {
    std::cout << show.text;
    return ExitCode::Success;
}

// Writes each line of the text.
int Fail(int code, const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) std::cerr << "ActionHost: " << line << '\n';
    std::cerr.flush();
    return code;
}

}  // namespace

int main(int argc, char** argv) {
    PrepareOutput();
    try {
        const int code = std::visit([](const auto& options) { return Execute(options); }, ParseOptions(argc, argv));
        return std::cout.flush() ? code : Fail(ExitCode::Failure, "the output could not be written");
    } catch (const BadInput& failure) {
        return Fail(ExitCode::BadInput, failure.what());
    } catch (const Harbor::HRX& failure) {
        return Fail(ExitCode::Failure, Harbor::ToUtf8(failure.ToText()));
    } catch (const std::exception& failure) {
        return Fail(ExitCode::Failure, failure.what());
    }
}
