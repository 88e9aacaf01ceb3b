// The parts of a line of the module's log.
//
//     2024-03-05 07:08:09.0120345 | DBG  | 4660    86 | ActionImpl:29                  | Entering: Name
//
// time | severity | process thread | source:line | message. All views refer to the text of the line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Host {

struct LogEntry {
    std::u16string_view time;
    std::u16string_view severity;  // empty for a number without a name
    std::uint32_t process = 0;     // the low 16 bits of the id
    std::uint32_t thread = 0;      // the same
    std::u16string_view source;
    std::uint32_t line = 0;
    std::u16string_view message;  // may begin with spaces that indent it, and may have line breaks in it
};

// Nothing if the text does not begin like a line.
[[nodiscard]] std::optional<LogEntry> ParseLogEntry(std::u16string_view text);

// A time of the log in UTF-8 with its offset from UTC: "2024-03-05T07:08:09.0120345+02:00". Of a local time that occurs
// twice, the later one is assumed. A time that no calendar has is returned as it is.
[[nodiscard]] std::string IsoLogTime(std::u16string_view time);

// Whether the text is the time of a line, or the beginning of one.
[[nodiscard]] bool IsTimeBeginning(std::u16string_view text);

// The first and the last line of a banner are that many asterisks.
inline constexpr std::size_t BannerWidth = 100;

// Whether the text is the first or the last line of a banner.
[[nodiscard]] bool IsBannerEdge(std::u16string_view text);

// Returns the first position from `from` on where a line or a banner begins, or npos. If that is inside a line, the
// line was cut off, and another one follows what is left of it.
[[nodiscard]] std::size_t FindLogBeginning(std::u16string_view text, std::size_t from);

}  // namespace Host
