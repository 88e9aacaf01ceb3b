// The severity scale of the log, and the constants that hold where no setting says otherwise.
#pragma once

#include <array>
#include <string_view>

#include "Harbor/Types.h"

namespace Harbor {

namespace LogSeverity {
inline constexpr std::uint32_t None = 0;  // never written; as MaxSeverity it silences everything
inline constexpr std::uint32_t Crit = 1;
inline constexpr std::uint32_t Err = 2;   // failures
inline constexpr std::uint32_t Warn = 3;  // recoverable oddities
inline constexpr std::uint32_t Info = 4;
inline constexpr std::uint32_t Dbg = 5;   // ordinary diagnostic text; traces of most methods
inline constexpr std::uint32_t Dbg2 = 6;  // traces of methods that run often
inline constexpr std::uint32_t Dbg3 = 7;  // the trace of the hottest accessor
}  // namespace LogSeverity

// The names in the log and in the setting MaxSeverity, by number.
inline constexpr std::array<std::u16string_view, 8> LogSeverityNames{u"NONE", u"CRIT", u"ERR",  u"WARN",
                                                                     u"INFO", u"DBG",  u"DBG2", u"DBG3"};

// The empty text for a number of 8 or more.
constexpr std::u16string_view LogSeverityName(std::uint32_t severity) noexcept {
    return severity < LogSeverityNames.size() ? LogSeverityNames[severity] : std::u16string_view();
}

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
