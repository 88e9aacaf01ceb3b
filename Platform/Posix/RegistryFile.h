// The text format of the registry, as in exported .reg files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Types.h"

namespace Platform::Posix {

struct RegistryValue {
    WideString name;  // empty for the key's default value
    DWORD type;
    std::vector<std::uint8_t> data;  // texts are little-endian and end with a terminator
};

// Returns the values of one key in the order of the text, or nothing if the text has neither the key nor one below it.
// The path begins with the full name of the root. The sections of a key are merged; if a name occurs more than once,
// the last value is used. Deletions and malformed lines are ignored. Throws std::bad_alloc.
[[nodiscard]] std::optional<std::vector<RegistryValue>> ReadRegistryKey(std::u16string_view text,
                                                                        std::u16string_view path);

}  // namespace Platform::Posix
