// A logger whose lines can be read, and the clock that the log's settings and file age by.
#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <vector>

#include "Common/Logging/LogManager.h"
#include "Support/ScopedVariable.h"

namespace Stage {

using Strings = std::vector<std::string>;
using Setting = std::optional<std::string>;

extern std::atomic<std::uint32_t> Ticks;  // what GetTickCount gives
void PassLogInterval();                   // lets the log's settings and its open file run out

// Keeps what it is given, at the severity that it asks for.
class LogLines final : public Harbor::ILogger {
public:
    explicit LogLines(const char* maxSeverity = "DBG3");
    ~LogLines();
    void Write(const char16_t* text, std::int32_t length) override;
    void SetSeverity(const Setting& name);
    Strings Take();  // the severity in four columns, a blank, and the message with its indentation

private:
    std::optional<ScopedVariable> severity_;
    std::mutex lock_;
    Strings lines_;
};

}  // namespace Stage
