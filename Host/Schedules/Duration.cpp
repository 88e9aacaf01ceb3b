#include "Host/Schedules/Duration.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

#include "Host/Base/Failure.h"
#include "Host/Base/Number.h"

namespace Host {

using std::chrono::milliseconds;

namespace {

struct Unit {
    std::string_view name;
    milliseconds length;
};
constexpr std::array Units{Unit{"d", std::chrono::days{1}}, Unit{"h", std::chrono::hours{1}},
                           Unit{"m", std::chrono::minutes{1}}, Unit{"s", std::chrono::seconds{1}},
                           Unit{"ms", milliseconds{1}}};
constexpr std::uint32_t LargestNumber = std::numeric_limits<std::uint32_t>::max();

constexpr char Form[] = "a duration is a whole number with ms, s, m, h or d, such as 500ms or 1h30m";
constexpr char TooLong[] = "the longest duration is 4294967295s, or 4294967295ms if it is written with ms";

// Removes the digits or letters at the start of `text` and returns them.
std::string_view Take(std::string_view& text, std::string_view characters) {
    const std::string_view taken = text.substr(0, text.find_first_not_of(characters));
    text.remove_prefix(taken.size());
    return taken;
}

milliseconds TakeNumber(std::string_view& text, std::span<const Unit>& units) {
    const std::string_view digits = Take(text, "0123456789");
    if (digits.empty()) throw BadForm(Form);
    const std::string_view name = Take(text, "abcdefghijklmnopqrstuvwxyz");
    if (name.empty() && text.empty()) {
        throw BadForm("a unit is missing; write " + std::string(digits) + "s for seconds, or use ms, m, h or d");
    }
    const auto unit = std::ranges::find(units, name, &Unit::name);
    if (unit == units.end()) {
        const bool isKnown = std::ranges::find(Units, name, &Unit::name) != Units.end();
        throw BadForm(isKnown ? "units go from d to ms, each at most once, such as 1h30m" : Form);
    }
    units = {std::next(unit), units.end()};
    const auto number = ParseNumber<std::uint32_t>(digits);
    if (!number) throw BadForm(TooLong);
    return unit->length * *number;
}

}  // namespace

Duration ParseDuration(std::string_view text) {
    std::span<const Unit> units = Units;
    milliseconds length{0};
    do length += TakeNumber(text, units);
    while (!text.empty());

    const bool hasMilliseconds = units.empty();
    const auto count = hasMilliseconds ? length.count() : length / std::chrono::seconds{1};
    if (count > LargestNumber) throw BadForm(TooLong);
    const auto number = static_cast<std::uint32_t>(count);
    return hasMilliseconds ? Duration{0, number} : Duration{number, 0};
}

std::string DurationText(milliseconds length) {
    if (length == milliseconds::zero()) return "0s";
    std::string text;
    for (const Unit& unit : Units) {
        if (const auto number = length / unit.length; number != 0)
            text.append(std::to_string(number)).append(unit.name);
        length %= unit.length;
    }
    return text;
}

}  // namespace Host
