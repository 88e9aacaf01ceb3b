#include "Host/CommandLine/GivenValues.h"

#include <algorithm>
#include <map>

#include "Host/Base/Failure.h"

namespace Host {
namespace {

bool IsOneOf(std::span<const std::string_view> options, std::string_view option) {
    return std::ranges::find(options, option) != options.end();
}

}  // namespace

GivenValues::GivenValues(const CLI::App& app) {
    std::map<const CLI::Option*, std::size_t> taken;
    for (const CLI::Option* const option : app.parse_order()) {
        const bool isArgument = option->get_lnames().empty();
        const std::string name = isArgument ? option->get_name() : option->get_lnames().front();
        Add({name, option->results()[taken[option]++], isArgument ? name : "--" + name, std::nullopt});
    }
}

void GivenValues::Add(GivenValue value) {
    if (value.option != "name") {
        values_.push_back(std::move(value));
        return;
    }
    const auto registration = std::find_if(values_.rbegin(), values_.rend(), [](const GivenValue& other) {
        return IsOneOf(RegisteringOptions, other.option);
    });
    if (registration == values_.rend()) {
        throw InvalidValue(value.source, value.text,
                           BadForm("a name follows the --every, --at or --watch that it names"));
    }
    if (registration->name) {
        throw InvalidValue(
            value.source, value.text,
            BadForm("\"" + registration->text + "\" has the name \"" + *registration->name + "\" already"));
    }
    registration->name = std::move(value.text);
}

void GivenValues::AddMissing(const GivenValues& others) {
    const std::vector<GivenValue> own = values_;
    std::ranges::copy_if(others, std::back_inserter(values_), [&](const GivenValue& value) {
        return std::ranges::find(own, value.option, &GivenValue::option) == own.end();
    });
}

const GivenValue* GivenValues::Find(std::string_view option) const {
    const auto found = std::ranges::find(values_, option, &GivenValue::option);
    return found != values_.end() ? &*found : nullptr;
}

GivenValues GivenValues::Of(std::span<const std::string_view> options) const {
    GivenValues found;
    std::ranges::copy_if(values_, std::back_inserter(found.values_),
                         [&](const GivenValue& value) { return IsOneOf(options, value.option); });
    return found;
}

bool GivenValues::HasFlag(std::string_view option) const {
    const GivenValue* const value = Find(option);
    if (value == nullptr) return false;
    if (value->text != "true" && value->text != "false")
        throw InvalidValue(value->source, value->text, "true or false");
    return value->text == "true";
}

}  // namespace Host
