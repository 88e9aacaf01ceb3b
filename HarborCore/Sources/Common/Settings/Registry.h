// Texts of a registry key.
#pragma once

#include <map>

#include "Harbor/Types.h"

namespace Harbor {

// The text values of a key by name, environment references expanded; others are left out. `keyText` begins with
// HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER, HKLM or HKCU and a separator, or lies below HKEY_LOCAL_MACHINE. A key that
// can't be opened, and a text that is nothing but a root name, gives an empty map. A failing read throws HRX.
[[nodiscard]] std::map<WideString, WideString> ReadRegistryValues(std::u16string_view keyText);

}  // namespace Harbor
