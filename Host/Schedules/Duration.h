// Durations as they are written on the command line and shown.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace Host {

// The module has different rules for an interval in seconds and one in milliseconds, so the unit is kept.
struct Duration {
    std::uint32_t seconds = 0;       // 0 if the text has milliseconds
    std::uint32_t milliseconds = 0;  // of the whole duration if the text has milliseconds

    [[nodiscard]] std::chrono::milliseconds Length() const noexcept {
        return std::chrono::seconds{seconds} + std::chrono::milliseconds{milliseconds};
    }
};

// Reads numbers with the units d, h, m, s and ms in that order, such as "500ms", "1h30m" or "1d". The longest duration
// is 2^32 - 1 milliseconds for a text with ms, and as many seconds for any other. Throws BadForm, which names what is
// wrong.
[[nodiscard]] Duration ParseDuration(std::string_view text);

// The shortest text that ParseDuration reads as that length: "1h30m" for 5400 s, "0s" for none.
[[nodiscard]] std::string DurationText(std::chrono::milliseconds length);

}  // namespace Host
