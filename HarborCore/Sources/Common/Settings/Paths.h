// The text of paths. Both "\" and "/" separate; "\" is what is added.
#pragma once

#include <vector>

#include "Harbor/Types.h"

namespace Harbor {

// True for an empty path and for one that begins with neither a separator nor a drive.
[[nodiscard]] bool IsRelativePath(std::u16string_view path) noexcept;
// Adds the separator behind a text that is not empty and has none there.
void EnsureTrailingSeparator(WideString& path, WideChar separator);
// The elements between separators, empty ones left out.
[[nodiscard]] std::vector<WideString> SplitPath(std::u16string_view path);
// `base` if `rest` is empty, else both joined, "." and ".." resolved; an absolute `rest` replaces the base. A failure
// is thrown as HRX.
[[nodiscard]] WideString CombinePath(const WideString& base, const WideString& rest);
// Creates a directory with all its parents. A failure is thrown as HRX unless errors are ignored.
void CreateDirectoryPath(const WideString& path, void* security, bool ignoreErrors);

}  // namespace Harbor
