// The settings of the log. They are read again at most once in five seconds.
#pragma once

#include <atomic>

#include "Common/Logging/Log.h"
#include "Common/Settings/SettingsSection.h"

namespace Harbor {

// Returns the directory of log files in the form in which the log uses it, with a trailing separator. `resolved` is the
// setting Path after DataDirectory::Resolve.
[[nodiscard]] WideString LogDirectory(WideString resolved);

class LogSettings : public SettingsSection {
public:
    LogSettings();

    // Clears the caches and computes the severity limit again if the last refresh is more than five seconds old. Two
    // threads may do that at the same time, which is harmless. Throws HRX with E_OUTOFMEMORY if memory runs out.
    void RefreshIfDue() {
        if (LogLimit.IsRefreshDue()) [[unlikely]]
            Refresh();
    }

    std::uint32_t MaxSeverity() const noexcept { return LogLimit.maxSeverity.load(std::memory_order_relaxed); }

    // Returns the directory of log files with a trailing separator. Creates it if it has changed, and after a failed
    // creation again at each refresh. Throws HRX if it cannot be determined. Any thread may call it.
    WideString GetLogDirectory();

    // Returns the milliseconds for which the log file is kept open. Each line needs them, so they are looked up once
    // for each refresh.
    std::uint32_t GetKeepOpenInterval();

    // Returns a number from the cached settings, or the default if it is missing.
    std::uint32_t GetNumberOr(const WideChar* key, std::uint32_t defaultValue);

private:
    void Refresh();
    std::uint32_t ComputeMaxSeverity();
    // Reports a name on the debugger's output, unless it was reported at the last refresh. Nothing is reported for an
    // empty text.
    void ReportUnknownSeverity(std::u16string_view text);
    WideString ComputeDirectory();

    std::atomic<bool> logDirectoryStale_{false};
    std::atomic<std::uint64_t> keepOpenInterval_{0};  // in the low half; in the high half the tick of its refresh
    std::atomic<std::size_t> reportedSeverity_{0};    // hash of the unknown name that was reported last

    CriticalSection directoryLock_;  // guards both members below
    WideString logDirectory_;
    bool isLogDirectoryMade_ = false;
};

}  // namespace Harbor
