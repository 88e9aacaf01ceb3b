#include "Attributes.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <stdexcept>

#include "Buffers.h"
#include "NodeFabric/NodeFabric.h"

namespace NodeFabric {

using namespace Harbor;

namespace {

struct NumberType {
    std::uint16_t type;
    std::uint32_t size;  // in bytes
    std::int64_t least, greatest;
};

template <class Number>
constexpr NumberType RangeOf(std::uint16_t type) {
    using Limits = std::numeric_limits<Number>;
    return {type, sizeof(Number), std::int64_t{Limits::min()}, std::int64_t{Limits::max()}};
}

constexpr NumberType NumberTypes[] = {RangeOf<std::int32_t>(AcnTypeInt32), RangeOf<std::uint32_t>(AcnTypeUInt32),
                                      RangeOf<std::int64_t>(AcnTypeInt64), RangeOf<bool>(AcnTypeBool)};

const NumberType* FindNumberType(std::uint16_t type) noexcept {
    const auto found = std::ranges::find(NumberTypes, type, &NumberType::type);
    return found != std::end(NumberTypes) ? found : nullptr;
}

bool InRange(std::int64_t number, const NumberType& type) noexcept {
    return number >= type.least && number <= type.greatest;
}

static_assert(std::endian::native == std::endian::little, "a number's first bytes are its low ones");

std::optional<AttributeValue> ParseNumber(const NumberType& type, const void* bytes, std::uint32_t size) {
    if (size != type.size) return std::nullopt;
    std::uint64_t raw = 0;
    std::memcpy(&raw, bytes, size);
    auto number = static_cast<std::int64_t>(raw);
    if (type.type == AcnTypeInt32) number = static_cast<std::int32_t>(raw);  // restores the sign
    if (!InRange(number, type)) return std::nullopt;
    return AttributeValue{type.type, number, {}};
}

std::optional<AttributeValue> ParseText(std::uint16_t type, const void* bytes, std::uint32_t size) {
    if (size == 0 || size % sizeof(WideChar) != 0) return std::nullopt;
    WideString text(size / sizeof(WideChar), u'\0');
    std::memcpy(text.data(), bytes, size);  // the bytes need not be aligned
    if (text.back() != 0) return std::nullopt;
    text.pop_back();
    return AttributeValue{type, 0, std::move(text)};
}

HRESULT CopyBytes(const void* bytes, std::size_t length, void* buffer, std::uint32_t* size) {
    if (size == nullptr) return S_OK;
    const HRESULT code = ClaimRoom(length, buffer, *size);
    if (Succeeded(code)) std::memcpy(buffer, bytes, length);
    return code;
}

constexpr std::size_t LargestUnindexedCount = 8;
constexpr std::uint32_t FreeSlot = std::numeric_limits<std::uint32_t>::max();

std::size_t HashOf(std::u16string_view name) noexcept {
    return std::hash<std::u16string_view>()(name);
}

}  // namespace

bool IsTextType(std::uint16_t type) noexcept {
    return type == AcnTypeText || type == AcnTypeWideText;
}

std::optional<AttributeValue> ParseValue(std::uint16_t type, const void* bytes, std::uint32_t size) {
    if (IsTextType(type)) return ParseText(type, bytes, size);
    if (const NumberType* number = FindNumberType(type)) return ParseNumber(*number, bytes, size);
    return std::nullopt;
}

HRESULT ReadValue(const AttributeValue& value, std::uint16_t type, void* buffer, std::uint32_t* size) {
    if (IsTextType(type) != IsTextType(value.type)) return DATATYPE_MISMATCH;
    if (IsTextType(type)) {
        return CopyBytes(value.text.c_str(), (value.text.size() + 1) * sizeof(WideChar), buffer, size);
    }
    const NumberType* wanted = FindNumberType(type);
    if (wanted == nullptr || !InRange(value.number, *wanted)) return DATATYPE_MISMATCH;
    return CopyBytes(&value.number, wanted->size, buffer, size);
}

AttributeSet::AttributeSet(const AttributeSet& other)
    : attributes_(other.attributes_),
      index_(other.index_ != nullptr ? std::make_unique<Index>(*other.index_) : nullptr) {}

AttributeSet& AttributeSet::operator=(AttributeSet other) noexcept {
    attributes_.swap(other.attributes_);
    index_.swap(other.index_);
    return *this;
}

const AttributeValue* AttributeSet::Find(std::u16string_view name) const noexcept {
    const std::size_t position = PositionOf(name);
    return position < attributes_.size() ? &attributes_[position].value : nullptr;
}

void AttributeSet::Set(std::u16string_view name, AttributeValue value) {
    const std::size_t position = PositionOf(name);
    if (position < attributes_.size()) {
        attributes_[position].value = std::move(value);
        return;
    }
    if (position >= LargestUnindexedCount) ReserveInIndex(position + 1);
    attributes_.push_back({WideString(name), std::move(value)});
    if (index_ != nullptr) AddToIndex(position);
}

std::size_t AttributeSet::PositionOf(std::u16string_view name) const noexcept {
    if (index_ == nullptr) {
        const auto found = std::ranges::find(attributes_, name, &Attribute::name);
        return static_cast<std::size_t>(found - attributes_.begin());
    }
    for (std::size_t slot = HashOf(name);; ++slot) {
        const std::uint32_t position = (*index_)[slot & (index_->size() - 1)];
        if (position == FreeSlot) return attributes_.size();
        if (attributes_[position].name == name) return position;
    }
}

// Keeps at least half of the slots free, so that a search ends soon.
void AttributeSet::ReserveInIndex(std::size_t count) {
    if (count >= FreeSlot) throw std::length_error("no 32-bit position");
    if (index_ != nullptr && 2 * count <= index_->size()) return;
    index_ = std::make_unique<Index>(std::bit_ceil(2 * count), FreeSlot);
    for (std::size_t position = 0; position < attributes_.size(); ++position) AddToIndex(position);
}

void AttributeSet::AddToIndex(std::size_t position) noexcept {
    std::size_t slot = HashOf(attributes_[position].name);
    while ((*index_)[slot & (index_->size() - 1)] != FreeSlot) ++slot;
    (*index_)[slot & (index_->size() - 1)] = static_cast<std::uint32_t>(position);
}

WideString AttributeSet::Names() const {
    WideString names;
    for (const Attribute& attribute : attributes_) names.append(attribute.name).push_back(u'\0');
    return names;
}

}  // namespace NodeFabric
