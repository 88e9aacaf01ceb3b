#include "Host/Log/LogOptions.h"

#include <algorithm>

#include "Common/Base/Text.h"
#include "Common/Logging/LogSeverity.h"
#include "Host/Log/LogEntry.h"

namespace Host {

std::optional<std::uint32_t> ParseSeverity(std::string_view name) {
    const auto& names = Harbor::LogSeverityNames;
    const auto wide = Harbor::FromUtf8(name);
    // NONE is not the severity of any line.
    const auto found = std::find_if(names.begin() + 1, names.end(),
                                    [&](std::u16string_view known) { return Harbor::EqualsIgnoreCase(known, wide); });
    if (found == names.end()) return std::nullopt;
    return static_cast<std::uint32_t>(found - names.begin());
}

std::optional<std::u16string> ParseLogTime(std::string_view text) {
    constexpr std::size_t dateLength = 10;
    std::u16string time = Harbor::FromUtf8(text);
    if (time.size() < dateLength || !IsTimeBeginning(time)) return std::nullopt;
    return time;
}

}  // namespace Host
