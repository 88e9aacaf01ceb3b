// Whole numbers in text.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace Host {

// Reads decimal digits, after a minus sign for a signed T. Nothing if the text has anything else in it, is empty, or
// does not fit into T.
template <class T>
[[nodiscard]] std::optional<T> ParseNumber(std::string_view text) noexcept {
    T number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

}  // namespace Host
