// The severities of the log, and the defaults of its settings.
#pragma once

#include <array>
#include <string_view>

#include "Harbor/Types.h"

namespace Harbor {

namespace LogSeverity {
inline constexpr std::uint32_t None = 0;  // no line has it; as MaxSeverity it turns the log off
inline constexpr std::uint32_t Crit = 1;  // not used yet
inline constexpr std::uint32_t Err = 2;   // failures
inline constexpr std::uint32_t Warn = 3;  // unexpected states that the code recovers from
inline constexpr std::uint32_t Info = 4;  // not used yet
inline constexpr std::uint32_t Dbg = 5;   // diagnostics; traces of most methods
inline constexpr std::uint32_t Dbg2 = 6;  // traces of methods that run often
inline constexpr std::uint32_t Dbg3 = 7;  // the trace of the accessor that runs most often
}  // namespace LogSeverity

// The names of the severities in the log and in the setting MaxSeverity.
inline constexpr std::array<std::u16string_view, 8> LogSeverityNames{u"NONE", u"CRIT", u"ERR",  u"WARN",
                                                                     u"INFO", u"DBG",  u"DBG2", u"DBG3"};

// Returns an empty text for a number of 8 or more.
constexpr std::u16string_view LogSeverityName(std::uint32_t severity) noexcept {
    return severity < LogSeverityNames.size() ? LogSeverityNames[severity] : std::u16string_view();
}

// Intervals in milliseconds.
struct LogDefaultValues {
    const WideChar* directory = u"Logs\\";
    std::uint32_t maxSeverity = LogSeverity::Dbg;
    std::uint32_t refreshIntervalMs = 5000;
    std::uint32_t keepOpenIntervalMs = 5000;
    std::uint32_t fileSizeThresholdMB = 1024;
    bool revertImpersonation = true;
};
inline constexpr LogDefaultValues LogDefaults;

}  // namespace Harbor
