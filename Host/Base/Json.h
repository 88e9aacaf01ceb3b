// Lines of JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace Host {

// Keeps the members of an object in their order.
using Json = nlohmann::ordered_json;

// Returns the value as one line with its end. Texts that are not valid UTF-8 get replacement characters.
[[nodiscard]] std::string JsonLine(const Json& value);

// Returns convert(*value), or null if there is no value.
template <class T, class Convert>
[[nodiscard]] Json JsonOrNull(const std::optional<T>& value, Convert convert) {
    return value ? Json(convert(*value)) : Json();
}

}  // namespace Host
