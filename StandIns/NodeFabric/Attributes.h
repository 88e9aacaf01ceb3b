// Typed values, and the attributes of one node. Nothing here is locked: the node guards its set.
#pragma once

#include <memory>
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

// Returns the value of the bytes, or nothing if the type is unknown or the bytes are not a value of it.
[[nodiscard]] std::optional<AttributeValue> ParseValue(std::uint16_t type, const void* bytes, std::uint32_t size);

// Stores the bytes of the value as `type`. If `size` is null, only checks whether the value converts to `type`.
[[nodiscard]] Harbor::HRESULT ReadValue(const AttributeValue& value, std::uint16_t type, void* buffer,
                                        std::uint32_t* size);

[[nodiscard]] bool IsTextType(std::uint16_t type) noexcept;

struct Attribute {
    Harbor::WideString name;
    AttributeValue value;
};

// Keeps the order in which the names were first set. Most nodes have few attributes, which a linear search finds
// fastest; more of them are indexed. No attribute is ever removed.
class AttributeSet {
public:
    AttributeSet() = default;
    AttributeSet(const AttributeSet& other);
    AttributeSet(AttributeSet&&) noexcept = default;
    AttributeSet& operator=(AttributeSet other) noexcept;
    ~AttributeSet() = default;

    // Constant time on average.
    [[nodiscard]] const AttributeValue* Find(std::u16string_view name) const noexcept;
    // Amortised constant time on average. If it throws, the set is unchanged.
    void Set(std::u16string_view name, AttributeValue value);

    // Every name, each followed by a 0.
    [[nodiscard]] Harbor::WideString Names() const;

    auto begin() const noexcept { return attributes_.begin(); }
    auto end() const noexcept { return attributes_.end(); }
    bool Empty() const noexcept { return attributes_.empty(); }

private:
    // A hash table with linear probing: the positions of the attributes. Its size is a power of 2.
    using Index = std::vector<std::uint32_t>;

    // The position of an attribute, or the number of attributes if it is not there.
    [[nodiscard]] std::size_t PositionOf(std::u16string_view name) const noexcept;
    void ReserveInIndex(std::size_t count);
    void AddToIndex(std::size_t position) noexcept;

    std::vector<Attribute> attributes_;
    std::unique_ptr<Index> index_;  // null while there are few attributes
};

}  // namespace NodeFabric
