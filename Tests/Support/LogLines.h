// A logger whose lines can be read, and the clock by which the log's settings and open file expire.
#pragma once

#include <atomic>
#include <optional>
#include <vector>

#include "Common/Base/Lock.h"
#include "Common/Logging/LogManager.h"
#include "Support/ScopedVariable.h"

namespace Stage {

using Strings = std::vector<std::string>;
using Setting = std::optional<std::string>;

extern std::atomic<std::uint32_t> Ticks;  // the value that GetTickCount returns
void PassLogInterval();                   // expires the log's settings and its open file

// Collects the lines that are logged at the given severity.
class LogLines final : public Harbor::ILogger {
public:
    explicit LogLines(const char* maxSeverity = "DBG3");
    ~LogLines();
    void Write(const char16_t* text, std::int32_t length) override;
    void SetSeverity(const Setting& name);
    Strings Take();  // the severity in four columns, a space, and the message with its indentation

private:
    std::optional<ScopedVariable> severity_;
    Harbor::Lock lock_;
    Strings lines_;
};

}  // namespace Stage
