// Typed values, and the attributes of one node. No locks here: the node guards its set.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "Harbor/ResultCodes.h"

namespace NodeFabric {

struct AttributeValue {
    std::uint16_t type = 0;
    std::int64_t number = 0;  // of a numeric type
    Harbor::WideString text;  // of a text type, without its terminator
};

// A value from its bytes, or nothing if the type is unknown or the bytes are none of its values.
[[nodiscard]] std::optional<AttributeValue> ParseValue(std::uint16_t type, const void* bytes, std::uint32_t size);

// Stores the value's bytes as `type`. With a null `size` it only tells whether the value can be had as `type`.
[[nodiscard]] Harbor::HRESULT ReadValue(const AttributeValue& value, std::uint16_t type, void* buffer,
                                        std::uint32_t* size);

[[nodiscard]] bool IsTextType(std::uint16_t type) noexcept;

struct Attribute {
    Harbor::WideString name;
    AttributeValue value;
};

// Keeps the order in which the names were first set. A node has few attributes, so a search in line beats an index.
class AttributeSet {
public:
    [[nodiscard]] const AttributeValue* Find(std::u16string_view name) const noexcept;
    void Set(std::u16string_view name, AttributeValue value);

    // Every name with a 0 behind it.
    [[nodiscard]] Harbor::WideString Names() const;

    auto begin() const noexcept { return attributes_.begin(); }
    auto end() const noexcept { return attributes_.end(); }
    bool Empty() const noexcept { return attributes_.empty(); }

private:
    std::vector<Attribute> attributes_;
};

}  // namespace NodeFabric
