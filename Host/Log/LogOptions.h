// Which log to show, and what of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Host/Base/OutputFormat.h"

namespace Host {

struct LogOptions {
    std::string file;  // "-": standard input; empty: where the module writes
    std::string modulePath{};
    std::optional<std::uint32_t> leastSevere{};   // as the log numbers severities; nothing: all
    std::u16string since{}, until{};              // the first and the last time, as ParseLogTime returns it; empty: all
    std::optional<std::uint16_t> process{};       // the low 16 bits of its id; nothing: all
    std::optional<std::uint32_t> last{};          // how many of the lines that are there at the start; nothing: all
    std::optional<std::uint32_t> slowestCalls{};  // how many to show, instead of the lines
    bool follow = false;                          // continue with what is written later
    OutputFormat format = OutputFormat::Text;
};

inline constexpr std::string_view LogTimeForm =
    "a local time as in the log, or its beginning, such as 2026-03-29 or \"2026-03-29 00:30\"";

// The beginning of a time as the log writes it, at least the date. A time of the log is compared with as many of its
// characters. Nothing for any other text.
[[nodiscard]] std::optional<std::u16string> ParseLogTime(std::string_view text);

inline constexpr std::string_view SeverityForm = "CRIT, ERR, WARN, INFO, DBG, DBG2 or DBG3";

// The number of the severity with that name, in upper or lower case. Nothing for any other text.
[[nodiscard]] std::optional<std::uint32_t> ParseSeverity(std::string_view name);

}  // namespace Host
