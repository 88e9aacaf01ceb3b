#include "Host/Log/ShowLog.h"

#include <iostream>

#include "Host/Base/Failure.h"
#include "Host/Console/StopSignal.h"
#include "Host/Log/LogPrinter.h"
#include "Host/Log/LogSource.h"

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

}  // namespace

int ShowLog(const LogOptions& options) {
    std::ios::sync_with_stdio(false);
    LogPrinter printer(options, std::cout, std::cerr);
    LogParser parser(printer);
    std::vector<char> buffer(BlockSize);
    if (options.file == "-") {
        StandardInputSource source;
        ReadToEnd(source, parser, buffer);
    } else {
        FileSource source(options.file);
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
