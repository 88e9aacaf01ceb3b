// Text files that people write by hand or export from another system.
#pragma once

#include <string>

namespace Platform::Posix {

// Reads a whole file: UTF-8 with or without a byte-order mark, or UTF-16 little-endian with one. Malformed UTF-8
// becomes U+FFFD. On failure returns false, stores errno and leaves `text` unchanged. Throws std::bad_alloc.
[[nodiscard]] bool ReadTextFile(const std::string& nativePath, std::u16string& text, int& errorNumber);

}  // namespace Platform::Posix
