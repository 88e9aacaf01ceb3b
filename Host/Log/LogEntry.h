// The parts of a line of the module's log.
//
//     2024-03-05 07:08:09.0120345 | DBG  | 4660    86 | ActionImpl:29                  | Entering: Name
//
// time | severity | process thread | source:line | message. All views borrow from the line.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Host {

struct LogEntry {
    std::u16string_view time;
    std::u16string_view severity;  // empty for a number that has no name
    std::uint32_t process = 0;     // the low 16 bits, as the next
    std::uint32_t thread = 0;
    std::u16string_view source;
    std::uint32_t line = 0;
    std::u16string_view message;  // may begin with the blanks of its indentation and have line breaks in it
};

// Nothing if the text doesn't begin like a line.
[[nodiscard]] std::optional<LogEntry> ParseLogEntry(std::u16string_view text);

// The first and the last line of a banner.
[[nodiscard]] bool IsBannerEdge(std::u16string_view text);

// The first place from `from` on where a line or a banner begins, or npos. Behind the beginning of a line it shows that
// the line was cut and that another one stands behind what is left of it.
[[nodiscard]] std::size_t FindLogBeginning(std::u16string_view text, std::size_t from);

}  // namespace Host
