#include "Host/Log/ShowLog.h"

#include <filesystem>
#include <iostream>

#include "Harbor/Module.h"
#include "Host/Base/Failure.h"
#include "Host/Base/UserFile.h"
#include "Host/Console/StopSignal.h"
#include "Host/Log/LogPrinter.h"
#include "Host/Log/LogSource.h"
#include "Host/Settings/ModuleSettings.h"

namespace Host {
namespace {

constexpr std::size_t BlockSize = std::size_t{1} << 20;
constexpr std::chrono::milliseconds FollowInterval{200};

// Returns whether there was anything to read.
bool ReadToEnd(LogSource& source, LogParser& parser, std::span<char> buffer) {
    bool any = false;
    while (const std::size_t count = source.Read(buffer)) {
        parser.Feed({buffer.data(), count});
        std::cout.flush();
        any = true;
    }
    return any;
}

// After an interval without new bytes the last line is taken as complete.
void Follow(FileSource& source, LogParser& parser, std::span<char> buffer) {
    const StopSignal stop;
    while (!stop.WaitFor(FollowInterval) && std::cout) {
        if (ReadToEnd(source, parser, buffer)) continue;
        if (source.SwitchToNewFile()) {
            parser.Finish();
        } else {
            parser.Flush();
        }
        std::cout.flush();
    }
}

// Returns the options with the file that the module writes if they have none.
LogOptions WithFile(LogOptions options) {
    if (options.file.empty()) options.file = LogFileOf(Harbor::Module::Load(PathOf(options.modulePath)).Handle());
    return options;
}

FileSource OpenFile(const LogOptions& options) {
    const bool isAwaited = options.follow && !std::filesystem::exists(PathOf(options.file));
    if (isAwaited) std::cerr << "ActionHost: waiting for " << options.file << std::endl;
    return FileSource(options.file, isAwaited ? IfMissing::Wait : IfMissing::Refuse);
}

}  // namespace

int ShowLog(const LogOptions& given) {
    std::ios::sync_with_stdio(false);
    const LogOptions options = WithFile(given);
    LogPrinter printer(options, std::cout, std::cerr);
    LogParser parser(printer);
    std::vector<char> buffer(BlockSize);
    if (options.file == "-") {
        StandardInputSource source;
        ReadToEnd(source, parser, buffer);
    } else {
        FileSource source = OpenFile(options);
        ReadToEnd(source, parser, buffer);
        if (options.follow) {
            parser.Flush();
            printer.ShowLast();
            Follow(source, parser, buffer);
        }
    }
    parser.Finish();
    printer.End();
    std::cout.flush();
    return ExitCode::Success;
}

}  // namespace Host
