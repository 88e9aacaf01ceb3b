// What the command line and the configuration file ask for.
#pragma once

#include <optional>
#include <variant>

#include "DataCollection/ActionManager.h"
#include "Host/Commands.h"
#include "Host/Style.h"
#include "Schedules/TimePoint.h"

namespace Host {

// What was asked for, as it was written, and what it means.
template <class T>
struct Labelled {
    std::string label;
    T value;
};

struct RunOptions {
    std::string modulePath;
    std::chrono::milliseconds polling;
    std::vector<Labelled<DataCollection::ActionManagement::TimedActionSettings>> schedules;
    std::vector<Labelled<DataCollection::ActionManagement::ForcedActionConfig>> watches;
    std::vector<TimedCommand> commands;
    std::optional<std::chrono::milliseconds> duration;  // nothing: until somebody ends it
    Style style = Style::Text;
};

struct CompareOptions {
    std::string modulePath;
    std::string oldFile;
    std::string newFile;
    Style style = Style::Text;
};

struct LogOptions {
    std::string file;                           // "-": standard input
    std::optional<std::uint32_t> leastSevere;   // as the log numbers them; nothing: all
    std::optional<std::uint32_t> slowestCalls;  // how many to show, instead of the lines
    bool follow = false;
    Style style = Style::Text;
};

struct NextOptions {
    std::vector<Labelled<DataCollection::ActionManagement::TimedActionSettings>> schedules;
    std::uint32_t count = 0;
    DataCollection::ActionManagement::TimePoint from;
    Style style = Style::Text;
};

struct ExplainOptions {
    std::vector<Labelled<DataCollection::ActionManagement::TimedActionSettings>> schedules;
};

// The help or the version: to be shown, and that is all.
struct ShowText {
    std::string text;
};

using Options = std::variant<RunOptions, CompareOptions, LogOptions, NextOptions, ExplainOptions, ShowText>;

// Throws BadInput.
[[nodiscard]] Options ParseOptions(int argc, const char* const* argv);

}  // namespace Host
