#include "Common/Logging/LogSettings.h"

#include <algorithm>

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"
#include "Common/Logging/DebugOutput.h"
#include "Common/Settings/DataDirectory.h"
#include "Common/Settings/Paths.h"

namespace Harbor {
namespace {

constexpr WideChar Section[] = u"Logger";
constexpr WideChar MaxSeverityKey[] = u"MaxSeverity";
constexpr WideChar PathKey[] = u"Path";
constexpr WideChar KeepOpenKey[] = u"KeepOpenInterval";

}  // namespace

WideString LogDirectory(WideString resolved) {
    std::replace(resolved.begin(), resolved.end(), u'/', u'\\');
    EnsureTrailingSeparator(resolved, u'\\');
    return resolved;
}

LogSettings::LogSettings() : SettingsSection(Section, 0) {}

void LogSettings::Refresh() {
    ThrowIfOutOfMemory([this] {
        Clear();
        LogLimit.maxSeverity.store(ComputeMaxSeverity(), std::memory_order_relaxed);
        logDirectoryStale_.store(true, std::memory_order_release);
        LogLimit.lastRefreshTick.store(Platform::GetTickCount(), std::memory_order_release);
    });
}

std::uint32_t LogSettings::ComputeMaxSeverity() {
    WideString text;
    if (!GetString(MaxSeverityKey, text, UseCache::Yes)) return LogDefaults.maxSeverity;
    const auto name =
        std::find_if(LogSeverityNames.begin(), LogSeverityNames.end(),
                     [&](std::u16string_view candidate) { return EqualsIgnoreCase(candidate, Trim(text)); });
    const bool isKnown = name != LogSeverityNames.end();
    ReportUnknownSeverity(isKnown ? std::u16string_view() : text);
    return isKnown ? static_cast<std::uint32_t>(name - LogSeverityNames.begin()) : LogDefaults.maxSeverity;
}

void LogSettings::ReportUnknownSeverity(std::u16string_view text) {
    const std::size_t hash = text.empty() ? 0 : std::hash<std::u16string_view>()(text);
    if (reportedSeverity_.exchange(hash, std::memory_order_relaxed) == hash || text.empty()) return;
    WriteDebugOutput(u"LogSettings: MaxSeverity '%s' is not known, %s is used", text,
                     LogSeverityName(LogDefaults.maxSeverity));
}

std::uint32_t LogSettings::GetNumberOr(const WideChar* key, std::uint32_t defaultValue) {
    RefreshIfDue();
    std::uint32_t value = 0;
    return GetNumber(key, value, UseCache::Yes) ? value : defaultValue;
}

std::uint32_t LogSettings::GetKeepOpenInterval() {
    RefreshIfDue();
    const std::uint32_t refresh = LogLimit.lastRefreshTick.load(std::memory_order_acquire);
    const std::uint64_t known = keepOpenInterval_.load(std::memory_order_relaxed);
    if (known >> 32 == refresh) [[likely]]
        return static_cast<std::uint32_t>(known);
    const std::uint32_t interval = GetNumberOr(KeepOpenKey, LogDefaults.keepOpenIntervalMs);
    keepOpenInterval_.store(std::uint64_t{refresh} << 32 | interval, std::memory_order_relaxed);
    return interval;
}

WideString LogSettings::GetLogDirectory() {
    RefreshIfDue();
    const CriticalSectionGuard guard(directoryLock_);
    if (logDirectoryStale_.load(std::memory_order_acquire)) {
        WideString directory = ComputeDirectory();
        if (directory != logDirectory_ || !isLogDirectoryMade_) {
            logDirectory_ = std::move(directory);
            isLogDirectoryMade_ = CreateDirectoryPath(logDirectory_, DefaultSecurity, OnError::Ignore);
        }
        logDirectoryStale_.store(false, std::memory_order_relaxed);
    }
    return logDirectory_;
}

WideString LogSettings::ComputeDirectory() {
    WideString path;
    GetStringOr(path, PathKey, LogDefaults.directory, UseCache::Yes);
    return LogDirectory(ResolveDataPath(path));
}

}  // namespace Harbor
