// The values of options as they are written, before they are parsed.
#pragma once

#include <CLI/CLI.hpp>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Host {

// The options that register something.
inline constexpr std::array<std::string_view, 3> RegisteringOptions{"every", "at", "watch"};

struct GivenValue {
    std::string option;               // the long name without dashes, such as "every", or the name of an argument
    std::string text;                 // of a flag: "true" or "false"
    std::string source;               // for messages: "--every", or "demo.ini:7: every"
    std::optional<std::string> name;  // what --name says about a registration
};

// Values in the order in which they are written.
class GivenValues {
public:
    GivenValues() = default;
    // The values of the command line. Failures are thrown as BadInput, as by Add.
    explicit GivenValues(const CLI::App& app);

    // Appends a value. The value of the option "name" is kept with the last registration before it instead. Throws
    // BadInput if there is none, or if it has a name already.
    void Add(GivenValue value);
    // Appends those of the other values whose option has no value here.
    void AddMissing(const GivenValues& others);

    // Returns the value of an option that has at most one, or null. It is borrowed.
    [[nodiscard]] const GivenValue* Find(std::string_view option) const;
    // Returns the values of these options.
    [[nodiscard]] GivenValues Of(std::span<const std::string_view> options) const;
    [[nodiscard]] GivenValues Of(std::string_view option) const { return Of({&option, 1}); }
    [[nodiscard]] bool HasFlag(std::string_view option) const;

    [[nodiscard]] auto begin() const noexcept { return values_.begin(); }
    [[nodiscard]] auto end() const noexcept { return values_.end(); }

private:
    std::vector<GivenValue> values_;
};

}  // namespace Host
