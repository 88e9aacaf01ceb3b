// Which log to show, and what of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Host/Base/OutputFormat.h"

namespace Host {

struct LogOptions {
    std::string file;                             // "-": standard input
    std::optional<std::uint32_t> leastSevere{};   // as the log numbers severities; nothing: all
    std::optional<std::uint32_t> slowestCalls{};  // how many to show, instead of the lines
    bool follow = false;                          // continue with what is written later
    OutputFormat format = OutputFormat::Text;
};

inline constexpr std::string_view SeverityForm = "CRIT, ERR, WARN, INFO, DBG, DBG2 or DBG3";

// The number of the severity with that name, in upper or lower case. Nothing for any other text.
[[nodiscard]] std::optional<std::uint32_t> ParseSeverity(std::string_view name);

}  // namespace Host
