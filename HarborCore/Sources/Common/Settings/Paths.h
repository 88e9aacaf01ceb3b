// The text of paths. Both "\" and "/" separate the elements of a path; "\" is the separator that is added.
#pragma once

#include <vector>

#include "Harbor/Types.h"

namespace Harbor {

// Returns true for an empty path and for one that begins with neither a separator nor a drive.
[[nodiscard]] bool IsRelativePath(std::u16string_view path) noexcept;
// Appends `separator` to a text that is not empty and does not end in a separator. Every caller passes "\" so far.
void EnsureTrailingSeparator(WideString& path, WideChar separator);
// Returns the elements between the separators, without the empty ones.
[[nodiscard]] std::vector<WideString> SplitPath(std::u16string_view path);
// Returns both parts joined, with "." and ".." resolved by the text alone: the same on every system. An empty `rest`
// returns `base` unchanged, an absolute `rest` replaces it. A path of any length is joined; whether the system accepts
// it shows where it is used.
[[nodiscard]] WideString CombinePath(const WideString& base, const WideString& rest);

enum class OnError { Throw, Ignore };

// The security of a directory that is created as any other in its parent. Every caller passes it so far.
inline constexpr void* DefaultSecurity = nullptr;

// Creates a directory with all its parents. `security` is passed to the system. With OnError::Throw, which nobody
// passes so far, a directory that cannot be created is thrown as HRX; with OnError::Ignore the rest is still tried.
void CreateDirectoryPath(const WideString& path, void* security, OnError onError);

}  // namespace Harbor
