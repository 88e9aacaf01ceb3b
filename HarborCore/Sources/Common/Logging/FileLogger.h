// The module's log file: UTF-16 little-endian without a byte-order mark. It is opened for appending with all sharing
// allowed and reopened every few seconds, so that another program may rename, remove or empty it at any time.
#pragma once

#include <array>

#include "Common/Base/Guards.h"
#include "Common/Base/OwnedHandle.h"
#include "Common/Logging/LogManager.h"

namespace Harbor {

// Why the file could not be used: a code, and the number of the system's own error that caused it, or 0.
struct FileFailure {
    Platform::DWORD code = 0;
    int systemError = 0;
};

class FileLogger final : public ILogger {
public:
    // `banner` is written to each file before the first line of this logger; an empty one is not written. A file name
    // with a directory is used unchanged; one without a directory names a file in the log directory. The first line
    // opens the file.
    FileLogger(WideString fileName, WideString banner);
    FileLogger(const FileLogger&) = delete;
    FileLogger& operator=(const FileLogger&) = delete;

    // Writes a line in one write. A line that cannot be written is lost and reported on the debugger's output. Throws
    // HRX if the log directory cannot be determined. Any thread may call it.
    void Write(const WideChar* text, std::int32_t length) override;

private:
    using FileId = std::array<Platform::DWORD, 3>;  // volume serial number, file index high, file index low

    SystemHandle GetHandle();
    SystemHandle OpenLogFile();
    bool IsTooBig(Platform::HANDLE file, std::uint32_t threshold, const WideString& path, FileFailure& failure);
    void WriteBannerIfNew(Platform::HANDLE file, FileFailure& failure);

    const WideString fileName_;
    const WideString banner_;
    const bool hasDirectory_;

    CriticalSection lock_;            // guards all members below; not held while a line is written
    std::uint32_t lastOpenTick_ = 0;  // 0: never opened
    SystemHandle cachedFile_;
    FileId lastFileId_{};  // of the file that received the last banner
    bool tooBigReported_ = false;
};

// Registers a logger and unregisters it at the end of its own life. `logger` is not owned.
class LogRegistration {
public:
    explicit LogRegistration(ILogger& logger) : logger_(logger) { LogManager::Instance().Register(&logger_); }
    LogRegistration(const LogRegistration&) = delete;
    LogRegistration& operator=(const LogRegistration&) = delete;
    ~LogRegistration() { LogManager::Instance().Unregister(&logger_); }

private:
    ILogger& logger_;
};

struct ModuleVersion {
    std::int32_t major, minor, patch, build;
};

// Returns the name of this module without extension, followed by ".log".
[[nodiscard]] WideString MakeLogFileName();
// Returns the seven lines that describe the module and the process.
[[nodiscard]] WideString MakeLogBanner(const WideChar* moduleDescription, const ModuleVersion& version);

// Returns the module's file logger. The first call creates and registers it; later calls ignore their arguments.
FileLogger& GetFileLogger(const WideString& fileName, const WideString& banner);

}  // namespace Harbor
