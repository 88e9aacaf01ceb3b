// Text files that people write by hand or export from another system.
#pragma once

#include "Platform/Types.h"

namespace Platform::Common {

// Decodes the bytes of a text file: UTF-8 with or without a byte-order mark, or UTF-16 little-endian with one.
// Malformed UTF-8 becomes U+FFFD. Throws std::bad_alloc.
[[nodiscard]] WideString DecodeText(std::string_view bytes);

// Reads and decodes a whole file. Returns ERROR_SUCCESS, or the reason why it cannot be read; `text` is then unchanged.
// Throws std::bad_alloc. Each back end defines this function.
[[nodiscard]] DWORD ReadTextFile(const WideChar* path, WideString& text);

}  // namespace Platform::Common
