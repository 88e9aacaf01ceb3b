// The system's texts: the published English ones, without the line break at their end.
#pragma once

#include <optional>
#include <string_view>

#include "Platform/Types.h"

namespace Platform::Posix {

// A code of the Win32 facility (0x8007....) that has no text of its own has the text of its low word.
[[nodiscard]] std::optional<std::u16string_view> SystemMessageText(DWORD code) noexcept;

}  // namespace Platform::Posix
