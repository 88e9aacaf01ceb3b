#include "Common/Logging/LogManager.h"

#include "Common/Base/HRes.h"
#include "Common/Base/SingletonHolder.h"
#include "Common/Logging/DebugOutput.h"
#include "Common/Settings/SettingsStore.h"
#include "Platform/Process.h"

namespace Harbor {
namespace {

constinit SingletonHolder<LogManager> Holder;

// Set at the end of the manager, at the exit of the process or the unload of the module. A client may release an object
// even later: its statements are then disabled.
constinit std::atomic<bool> LogHasEnded{false};

thread_local std::uint32_t Indentation = 0;

// Returns true for version 6.0 of the system and later ones.
bool SystemSupportsIndentation() noexcept {
    Platform::OSVERSIONINFOEXW wanted{.dwMajorVersion = 6, .dwMinorVersion = 0, .wServicePackMajor = 0};
    std::uint64_t mask = 0;
    mask = Platform::VerSetConditionMask(mask, Platform::VER_MAJORVERSION, Platform::VER_GREATER_EQUAL);
    mask = Platform::VerSetConditionMask(mask, Platform::VER_MINORVERSION, Platform::VER_GREATER_EQUAL);
    mask = Platform::VerSetConditionMask(mask, Platform::VER_SERVICEPACKMAJOR, Platform::VER_GREATER_EQUAL);
    return Platform::VerifyVersionInfoW(
               &wanted, Platform::VER_MAJORVERSION | Platform::VER_MINORVERSION | Platform::VER_SERVICEPACKMAJOR,
               mask) != 0;
}

}  // namespace

std::uint32_t ThreadIndentation::Depth() noexcept {
    return Indentation;
}

void ThreadIndentation::Add(std::int32_t levels) noexcept {
    if (LogManager::Instance().IsIndentationSupported()) Indentation += static_cast<std::uint32_t>(levels);
}

LogManager& LogManager::Instance() {
    return Holder.Get();
}

LogManager::LogManager() : indentationSupported_(SystemSupportsIndentation()) {
    // Creates the store first, so that it outlives the manager.
    SettingsStore::Instance();
}

LogManager::~LogManager() {
    LogHasEnded.store(true);
    LogLimit.lastRefreshTick.store(0);
}

bool LogManager::Register(ILogger* logger) {
    Unregister(logger);
    for (auto& slot : loggers_) {
        ILogger* expected = nullptr;
        if (slot.compare_exchange_strong(expected, logger)) return true;
    }
    WriteDebugOutput(u"LogManager: Too many loggers");
    return false;
}

void LogManager::Unregister(ILogger* logger) {
    for (auto& slot : loggers_) {
        ILogger* expected = logger;
        slot.compare_exchange_strong(expected, nullptr);
    }
}

bool LogManager::IsEnabled(std::uint32_t severity) {
    if (severity < LogSeverity::Crit) return false;
    settings_.RefreshIfDue();
    return severity <= settings_.MaxSeverity();
}

void LogManager::Write(std::uint32_t severity, std::u16string_view text, const SourcePlace& place) {
    const Platform::FILETIME time = LogTimeStamp();
    const auto depth = indentationSupported_ ? static_cast<std::int32_t>(ThreadIndentation::Depth()) : 0;
    ThrowIfOutOfMemory([&] {
        TextBuffer line;
        formatter_.Format(line, severity, place, text, depth, &time);
        const std::u16string_view view = line.View();
        for (const auto& slot : loggers_) {
            if (ILogger* const logger = slot.load()) logger->Write(view.data(), static_cast<std::int32_t>(view.size()));
        }
    });
}

bool RefreshAndTest(std::uint32_t severity) {
    return !LogHasEnded.load(std::memory_order_relaxed) && LogManager::Instance().IsEnabled(severity);
}

void InsertLogOperands(WideStream& stream, const LogOperands& operands) {
    try {
        operands.InsertInto(stream);
    } catch (...) {
        stream << LogExceptionMark;
    }
}

void WriteLogLine(std::uint32_t severity, std::u16string_view text, const SourcePlace& place) {
    LogManager::Instance().Write(severity, text, place);
}

void WriteLogStatement(std::uint32_t severity, const LogOperands& operands, const SourcePlace& place) {
    WideStream stream;
    ThrowIfOutOfMemory([&] { InsertLogOperands(stream, operands); });
    WriteLogLine(severity, stream.View(), place);
}

}  // namespace Harbor
