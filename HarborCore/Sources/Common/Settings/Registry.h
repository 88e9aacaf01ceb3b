// Reads the texts of a registry key.
#pragma once

#include <map>

#include "Harbor/Types.h"

namespace Harbor {

// Returns the text values of a key by name, with environment references expanded. Values of other types are left out.
// `keyText` begins with HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER, HKLM or HKCU and a separator; any other text is a path
// below HKEY_LOCAL_MACHINE. Returns an empty map if the key cannot be opened or `keyText` is only the name of a root. A
// failed read is thrown as HRX.
[[nodiscard]] std::map<WideString, WideString> ReadRegistryValues(std::u16string_view keyText);

}  // namespace Harbor
