// The buffer protocol of the store: capacity in, size out.
#pragma once

#include <cstring>
#include <limits>
#include <stdexcept>
#include <string_view>

#include "Harbor/ResultCodes.h"

namespace NodeFabric {

// Stores the size required. Returns BUFFER_TOO_SMALL if the capacity is smaller or the buffer is null.
[[nodiscard]] inline Harbor::HRESULT ClaimRoom(std::size_t needed, const void* buffer, std::uint32_t& size) {
    if (needed > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("no 32-bit size");
    const bool fits = buffer != nullptr && size >= needed;
    size = static_cast<std::uint32_t>(needed);
    return fits ? Harbor::S_OK : Harbor::BUFFER_TOO_SMALL;
}

// Copies the text with a terminator. Sizes are in characters.
[[nodiscard]] inline Harbor::HRESULT CopyText(std::u16string_view text, Harbor::WideChar* buffer, std::uint32_t& size) {
    const Harbor::HRESULT code = ClaimRoom(text.size() + 1, buffer, size);
    if (Harbor::Succeeded(code)) {
        text.copy(buffer, text.size());
        buffer[text.size()] = 0;
    }
    return code;
}

}  // namespace NodeFabric
