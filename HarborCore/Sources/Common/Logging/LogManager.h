// Where a log statement's text becomes a line and reaches the loggers. One for each loaded module.
#pragma once

#include <array>
#include <atomic>

#include "Common/Logging/LogFormatter.h"
#include "Common/Logging/LogSettings.h"

namespace Harbor {

// A destination. It deals with its own failures: they never go to the log.
class ILogger {
public:
    // One complete line, line end included; a negative length means that the text ends at its 0. Any thread, several at
    // once.
    virtual void Write(const WideChar* text, std::int32_t length) = 0;

protected:
    ~ILogger() = default;
};

class LogManager {
public:
    // Created at the first call, in practice at load.
    static LogManager& Instance();

    // Puts a logger, which stays its owner's, into one of the four slots. False, with a message on the debugger's
    // output, if none is free.
    bool Register(ILogger* logger);
    void Unregister(ILogger* logger);

    bool IsEnabled(std::uint32_t severity);

    // Formats one line and gives it to every logger, on the calling thread and without a lock. Out of
    // memory leaves it as std::bad_alloc; the log statement makes HRX of that.
    void Write(std::uint32_t severity, std::u16string_view text, const SourcePlace& place);

    LogSettings& Settings() noexcept { return settings_; }
    bool IsIndentationSupported() const noexcept { return indentationSupported_; }

    LogManager(const LogManager&) = delete;
    LogManager& operator=(const LogManager&) = delete;

private:
    template <class T>
    friend class SingletonHolder;
    LogManager();

    std::array<std::atomic<ILogger*>, 4> loggers_{};
    const DefaultLogFormatter formatter_;
    const bool indentationSupported_;
    LogSettings settings_;
};

// The depth of the calling thread's lines, in levels. Only function traces change it.
class ThreadIndentation {
public:
    static std::uint32_t Depth() noexcept;
    static void Add(std::int32_t levels) noexcept;
};

}  // namespace Harbor
