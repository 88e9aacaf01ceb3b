// The settings of the log, looked at again at most once in five seconds.
#pragma once

#include <atomic>

#include "Common/Logging/LogSeverity.h"
#include "Common/Settings/SettingsSection.h"
#include "Platform/Time.h"

namespace Harbor {

class LogSettings : public SettingsSection {
public:
    LogSettings();

    // Clears the caches and computes the limit anew if the last refresh is more than five seconds old. Two threads that
    // find it due at once both do it, which is harmless.
    void RefreshIfDue() {
        const std::uint32_t last = lastRefreshTick_.load(std::memory_order_acquire);
        const bool due = last == 0 || Platform::GetTickCount() - last > LogDefaults.refreshIntervalMs;
        if (due) [[unlikely]]
            Refresh();
    }

    std::uint32_t MaxSeverity() const noexcept { return maxSeverity_.load(std::memory_order_relaxed); }

    // The directory of log files with its trailing separator; it is created when it changes. A failure to work it out
    // is thrown as HRX. Any thread.
    WideString GetLogDirectory();

    std::uint32_t GetNumberOr(const WideChar* key, std::uint32_t defaultValue);

private:
    void Refresh();
    std::uint32_t ComputeMaxSeverity();
    WideString ComputeDirectory();

    std::atomic<std::uint32_t> lastRefreshTick_{0};  // 0: never
    std::atomic<std::uint32_t> maxSeverity_{0};
    std::atomic<bool> logDirectoryStale_{false};

    CriticalSection directoryLock_;
    WideString logDirectory_;  // guarded by directoryLock_
};

}  // namespace Harbor
