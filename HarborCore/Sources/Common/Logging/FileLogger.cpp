#include "Common/Logging/FileLogger.h"

#include <system_error>

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"
#include "Common/Logging/DebugOutput.h"
#include "Common/Logging/ImpersonationRevertGuard.h"
#include "Common/Settings/ModuleInfo.h"
#include "Common/Settings/Paths.h"
#include "Platform/Errors.h"
#include "Platform/Process.h"

namespace Harbor {
namespace {

constexpr WideChar ThresholdKey[] = u"LogFileSizeThresholdMB";

constexpr int OpenTries = 4;
constexpr Platform::DWORD OpenRetryPauseMs = 10;
constexpr Platform::DWORD MegabyteShift = 20;

constexpr std::u16string_view BannerFormat =
    u"****************************************************************************************************\r\n"
    u"*** Module: %s (Base: 0x%p)\r\n"
    u"*** Version: %d.%d.%d.%d\r\n"
    u"*** Module description: %s\r\n"
    u"*** Process: %s (Pid: %u)\r\n"
    u"*** Command line: %s\r\n"
    u"****************************************************************************************************\r\n";

Platform::DWORD ByteSize(std::u16string_view text) noexcept {
    return static_cast<Platform::DWORD>(text.size() * sizeof(WideChar));
}

FileFailure LastFileFailure() noexcept {
    FileFailure failure{Platform::GetLastError(), 0};
    Platform::_get_errno(&failure.systemError);
    return failure;
}

FileFailure OpenForAppending(const WideString& path, SystemHandle& file) {
    constexpr Platform::DWORD shareAll =
        Platform::FILE_SHARE_READ | Platform::FILE_SHARE_WRITE | Platform::FILE_SHARE_DELETE;
    FileFailure failure;
    for (int tries = 0; tries < OpenTries; ++tries) {
        const Platform::HANDLE handle =
            Platform::CreateFileW(path.c_str(), Platform::FILE_APPEND_DATA, shareAll, nullptr, Platform::OPEN_ALWAYS,
                                  Platform::FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle != Platform::INVALID_HANDLE_VALUE) {
            file.reset(handle);
            return {};
        }
        failure = LastFileFailure();
        if (failure.code != Platform::ERROR_SHARING_VIOLATION) break;
        Platform::Sleep(OpenRetryPauseMs);
    }
    return failure;
}

}  // namespace

FileLogger::FileLogger(WideString fileName, WideString banner)
    : fileName_(std::move(fileName)),
      banner_(std::move(banner)),
      hasDirectory_(fileName_.find_first_of(u"/\\") != WideString::npos) {}

void FileLogger::Write(const WideChar* text, std::int32_t length) {
    const SystemHandle file = GetHandle();
    if (!file) return;
    const std::u16string_view line =
        length < 0 ? std::u16string_view(text) : std::u16string_view(text, static_cast<std::size_t>(length));
    Platform::DWORD written = 0;
    if (!Platform::WriteFile(file.get(), line.data(), ByteSize(line), &written, nullptr)) {
        WriteDebugOutput(u"FileLogger: cannot write (error: 0x%08x)", HResultFromWin32(Platform::GetLastError()));
    }
}

SystemHandle FileLogger::GetHandle() {
    const std::uint32_t keepOpen = LogManager::Instance().Settings().GetKeepOpenInterval();
    const CriticalSectionGuard guard(lock_);
    if (keepOpen == 0) {
        cachedFile_.reset();
        return OpenLogFile();
    }
    if (const std::uint32_t now = Platform::GetTickCount(); lastOpenTick_ == 0 || now - lastOpenTick_ >= keepOpen) {
        // Stored before the open, so that a failed open is tried again only after the interval.
        lastOpenTick_ = now;
        cachedFile_.reset();
        cachedFile_ = OpenLogFile();
    }
    SystemHandle file;
    if (cachedFile_) {
        const Platform::HANDLE process = Platform::GetCurrentProcess();
        Platform::HANDLE duplicate = nullptr;
        if (Platform::DuplicateHandle(process, cachedFile_.get(), process, &duplicate, 0, Platform::FALSE,
                                      Platform::DUPLICATE_SAME_ACCESS)) {
            file.reset(duplicate);
        } else {
            WriteDebugOutput(u"FileLogger: cannot duplicate handle (error: 0x%08x)",
                             HResultFromWin32(Platform::GetLastError()));
        }
    }
    return file;
}

SystemHandle FileLogger::OpenLogFile() {
    const ImpersonationRevertGuard identity(LogDefaults.revertImpersonation);
    LogSettings& settings = LogManager::Instance().Settings();
    const WideString path = hasDirectory_ ? fileName_ : settings.GetLogDirectory() + fileName_;
    const std::uint32_t threshold = settings.GetNumberOr(ThresholdKey, LogDefaults.fileSizeThresholdMB);
    SystemHandle file;
    FileFailure failure = OpenForAppending(path, file);
    if (file && threshold != 0 && IsTooBig(file.get(), threshold, path, failure)) file.reset();
    if (file && !banner_.empty()) WriteBannerIfNew(file.get(), failure);
    if (failure.code != Platform::ERROR_SUCCESS) {
        WriteDebugOutput(u"FileLogger: cannot open log file '%s' (error: 0x%08x)", SystemPath(path),
                         HResultFromWin32(failure.code));
        if (failure.systemError != 0) {
            WriteDebugOutput(u"FileLogger: the system's own error is %d (%s)", failure.systemError,
                             FromUtf8(std::generic_category().message(failure.systemError)));
        }
    }
    return file;
}

bool FileLogger::IsTooBig(Platform::HANDLE file, std::uint32_t threshold, const WideString& path,
                          FileFailure& failure) {
    Platform::DWORD high = 0;
    Platform::SetLastError(Platform::ERROR_SUCCESS);
    const Platform::DWORD low = Platform::GetFileSize(file, &high);
    if (low == Platform::INVALID_FILE_SIZE) failure = LastFileFailure();
    if (failure.code != Platform::ERROR_SUCCESS) return false;
    const auto megabytes = static_cast<std::uint32_t>(((std::uint64_t{high} << 32) | low) >> MegabyteShift);
    if (megabytes < threshold) {
        tooBigReported_ = false;
        return false;
    }
    if (!tooBigReported_) {
        WriteDebugOutput(u"FileLogger: log file '%s' is too big (size=%dMB threshold=%dMB)", SystemPath(path),
                         megabytes, threshold);
        tooBigReported_ = true;
    }
    return true;
}

void FileLogger::WriteBannerIfNew(Platform::HANDLE file, FileFailure& failure) {
    Platform::BY_HANDLE_FILE_INFORMATION information{};
    FileId id{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
    if (Platform::GetFileInformationByHandle(file, &information)) {
        id = {information.dwVolumeSerialNumber, information.nFileIndexHigh, information.nFileIndexLow};
    } else {
        WriteDebugOutput(u"FileLogger: cannot get file id (error: 0x%08x)", HResultFromWin32(Platform::GetLastError()));
    }
    if (id == lastFileId_) return;
    lastFileId_ = id;
    Platform::DWORD written = 0;
    const bool done = Platform::WriteFile(file, banner_.data(), ByteSize(banner_), &written, nullptr) != 0;
    failure = done ? FileFailure() : LastFileFailure();
}

WideString MakeLogFileName() {
    return ModuleName(OwnModule(), Extension::Strip) + u".log";
}

WideString MakeLogBanner(const WideChar* moduleDescription, const ModuleVersion& version) {
    const Platform::HMODULE own = OwnModule();
    return FormatWide(BannerFormat, ModuleFilePath(own), static_cast<const void*>(own), version.major, version.minor,
                      version.patch, version.build, moduleDescription, ModuleFilePath(nullptr),
                      Platform::GetCurrentProcessId(), Platform::GetCommandLineW());
}

FileLogger& GetFileLogger(const WideString& fileName, const WideString& banner) {
    // Creates the manager first, so that it outlives the logger.
    LogManager::Instance();
    static FileLogger logger(fileName, banner);
    static LogRegistration registration(logger);
    return logger;
}

}  // namespace Harbor
