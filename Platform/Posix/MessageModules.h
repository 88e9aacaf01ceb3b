// Message modules: files with texts of codes, which are opened like libraries but contain no code.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Types.h"

namespace Platform::Posix {

// Reads a whole module, which the caller must close. Returns null on failure and stores the code in `error`:
// ERROR_MOD_NOT_FOUND, ERROR_ACCESS_DENIED if the file cannot be read, ERROR_BAD_EXE_FORMAT if a line is malformed, or
// ERROR_NOT_ENOUGH_MEMORY.
HMODULE OpenMessageModule(const std::string& nativePath, DWORD& error) noexcept;

// Returns false if the handle is not an open message module.
bool CloseMessageModule(HMODULE module) noexcept;

// Returns the text of a code. For a language: its own text, else the text for any language (0). For language 0: the
// text for any language, else the English one, else the first. If there is none, `error` is ERROR_MR_MID_NOT_FOUND, or
// ERROR_RESOURCE_TYPE_NOT_FOUND if the handle is not an open message module. Throws std::bad_alloc.
std::optional<WideString> MessageModuleText(HMODULE module, DWORD code, DWORD language, DWORD& error);

}  // namespace Platform::Posix
