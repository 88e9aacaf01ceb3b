// Formats the text of a log statement as a line and passes it to the loggers. There is one LogManager in each module.
#pragma once

#include <array>
#include <atomic>

#include "Common/Logging/LogFormatter.h"
#include "Common/Logging/LogSettings.h"

namespace Harbor {

// A destination of log lines. It must not report its own failures to the log.
class ILogger {
public:
    // Receives one line with its line end. `length` counts characters; a negative one, which nobody passes yet, means
    // that the text ends in 0. Several threads may call it at once.
    virtual void Write(const WideChar* text, std::int32_t length) = 0;

protected:
    ~ILogger() = default;
};

class LogManager {
public:
    // Returns the module's LogManager. The first call, at load, creates it.
    static LogManager& Instance();

    // Stores a logger in one of the four slots. It is not owned: it must live until Unregister. Returns false, and
    // reports it on the debugger's output, if no slot is free.
    bool Register(ILogger* logger);
    void Unregister(ILogger* logger);

    // See IsLogEnabled.
    bool IsEnabled(std::uint32_t severity);

    // Formats one line and passes it to every logger, on the calling thread and without a lock. If memory runs out,
    // HRX with E_OUTOFMEMORY is thrown.
    void Write(std::uint32_t severity, std::u16string_view text, const SourcePlace& place);

    LogSettings& Settings() noexcept { return settings_; }
    bool IsIndentationSupported() const noexcept { return indentationSupported_; }

    LogManager(const LogManager&) = delete;
    LogManager& operator=(const LogManager&) = delete;

private:
    template <class T>
    friend class SingletonHolder;
    LogManager();
    ~LogManager();

    std::array<std::atomic<ILogger*>, 4> loggers_{};
    const DefaultLogFormatter formatter_;
    const bool indentationSupported_;
    LogSettings settings_;
};

// The indentation of the calling thread's lines, in levels. Only function traces change it.
class ThreadIndentation {
public:
    static std::uint32_t Depth() noexcept;
    static void Add(std::int32_t levels) noexcept;
};

}  // namespace Harbor
