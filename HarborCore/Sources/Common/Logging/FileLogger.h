// The module's log file: UTF-16 little-endian without a byte-order mark, opened for appending with all sharing allowed
// and reopened every few seconds, so that an outside tool may rename, remove or empty it at any time.
#pragma once

#include <array>

#include "Common/Base/Guards.h"
#include "Common/Base/OwnedHandle.h"
#include "Common/Logging/LogManager.h"

namespace Harbor {

class FileLogger final : public ILogger {
public:
    // `banner` heads each file that this logger writes to. A file name with a directory in it is used as it stands, one
    // without lies in the log directory.
    FileLogger(WideString fileName, WideString banner);
    FileLogger(const FileLogger&) = delete;
    FileLogger& operator=(const FileLogger&) = delete;

    // One write for a line. A line that can't be written is lost, with a message on the debugger's output.
    void Write(const WideChar* text, std::int32_t length) override;

private:
    using FileId = std::array<Platform::DWORD, 3>;  // volume serial number, file index high, file index low

    SystemHandle GetHandle();
    SystemHandle OpenLogFile();
    bool IsTooBig(Platform::HANDLE file, std::uint32_t threshold, const WideString& path, Platform::DWORD& error);
    void WriteBannerIfNew(Platform::HANDLE file, Platform::DWORD& error);

    const WideString fileName_;
    const WideString banner_;
    const bool hasDirectory_;

    CriticalSection lock_;            // guards all below; not held for the write of a line
    std::uint32_t lastOpenTick_ = 0;  // 0: never
    SystemHandle cachedFile_;
    FileId lastFileId_{};  // of the file that received the last banner
    bool tooBigReported_ = false;
};

// Keeps a logger registered while it lives.
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

// This module's name without extension, and ".log".
[[nodiscard]] WideString MakeLogFileName();
[[nodiscard]] WideString MakeLogBanner(const WideChar* moduleDescription, const ModuleVersion& version);

// The module's file logger, created and registered at the first call; later calls ignore their arguments.
FileLogger& GetFileLogger(const WideString& fileName, const WideString& banner);

}  // namespace Harbor
