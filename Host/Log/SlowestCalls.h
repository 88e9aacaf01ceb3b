// The traced calls of a log that took the longest.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "Host/Log/LogEntry.h"

namespace Host {

struct TracedCall {
    std::u16string_view name;
    std::int64_t microseconds = 0;
    bool exception = false;  // it ended with one
};

// Reads "Exiting: NAME [1 234.567 ms]" and "EXCEPTION at: NAME [0.012 ms]". Nothing for other messages.
[[nodiscard]] std::optional<TracedCall> ParseTracedCall(std::u16string_view message);

class SlowestCalls {
public:
    struct Call {
        std::string name;
        bool exception;
        std::u16string time;  // of its end
        std::uint32_t process;
        std::uint32_t thread;
    };
    // By microseconds, the slowest first; equal ones in the order of the log.
    using Calls = std::multimap<std::int64_t, Call, std::greater<>>;

    explicit SlowestCalls(std::size_t count) noexcept : count_(count) {}

    // Ignores lines that end no traced call, and the method that runs the worker until the manager ends.
    void Add(const LogEntry& entry);
    const Calls& Get() const noexcept { return calls_; }

private:
    const std::size_t count_;
    Calls calls_;
};

}  // namespace Host
