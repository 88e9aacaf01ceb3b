// The registry's text form, as it is exported to .reg files.
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
    std::vector<std::uint8_t> data;  // texts are little-endian and end in their terminator
};

// The values of one key in the order of the text, or nothing if neither the key nor one below it stands there. The
// path begins with the root's full name. All sections of the key count; of two values of one name the later one does.
// Deletions and malformed lines are skipped. Throws std::bad_alloc.
[[nodiscard]] std::optional<std::vector<RegistryValue>> ReadRegistryKey(std::u16string_view text,
                                                                        std::u16string_view path);

}  // namespace Platform::Posix
