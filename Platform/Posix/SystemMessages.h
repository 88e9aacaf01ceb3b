// The system's own texts: the published English ones, without the line break that follows them.
#pragma once

#include <optional>
#include <string_view>

#include "Platform/Types.h"

namespace Platform::Posix {

// A code of the Win32 facility (0x8007....) without a text of its own has that of its low word.
[[nodiscard]] std::optional<std::u16string_view> SystemMessageText(DWORD code) noexcept;

}  // namespace Platform::Posix
