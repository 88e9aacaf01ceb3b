// Message modules: files of texts for codes, opened like a library but holding no code.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Types.h"

namespace Platform::Posix {

// Reads a whole module. Null stores ERROR_MOD_NOT_FOUND, ERROR_ACCESS_DENIED for a file that can't be read,
// ERROR_BAD_EXE_FORMAT for one with a malformed line, or ERROR_NOT_ENOUGH_MEMORY. The caller closes the module.
HMODULE OpenMessageModule(const std::string& nativePath, DWORD& error) noexcept;

// False if the handle is no open message module.
bool CloseMessageModule(HMODULE module) noexcept;

// The text of a code. A language is answered by its own text or by one for any language (0); language 0 by a text for
// any language, else by the English one, else by the first. Nothing stores ERROR_MR_MID_NOT_FOUND, or
// ERROR_RESOURCE_TYPE_NOT_FOUND if the handle is no open message module. Throws std::bad_alloc.
std::optional<WideString> MessageModuleText(HMODULE module, DWORD code, DWORD language, DWORD& error);

}  // namespace Platform::Posix
