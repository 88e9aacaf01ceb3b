#include "Common/Settings/Paths.h"

#include <algorithm>

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"
#include "Platform/Errors.h"
#include "Platform/Files.h"

namespace Harbor {
namespace {

constexpr std::u16string_view Separators = u"\\/";
constexpr std::size_t LongestPath = 260;  // the least room that PathCombineW asks for

bool IsSeparator(WideChar c) noexcept {
    return Separators.find(c) != Separators.npos;
}

// Returns whether the directory exists now.
bool CreateIfMissing(const WideString& directory, void* security, OnError onError) {
    const Platform::DWORD attributes = Platform::GetFileAttributesW(directory.c_str());
    if (attributes != Platform::INVALID_FILE_ATTRIBUTES) return (attributes & Platform::FILE_ATTRIBUTE_DIRECTORY) != 0;
    const Platform::DWORD error = Platform::GetLastError();
    if (error != Platform::ERROR_FILE_NOT_FOUND && error != Platform::ERROR_PATH_NOT_FOUND) return false;
    const HRES created = HRES::FromBoolUnchecked(Platform::CreateDirectoryW(directory.c_str(), security));
    if (onError == OnError::Throw) created.ThrowIfFailed();
    return created.Succeeded();
}

}  // namespace

bool IsRelativePath(std::u16string_view path) noexcept {
    if (path.empty()) return true;
    return !IsSeparator(path[0]) && !(path.size() > 1 && path[1] == u':');
}

void EnsureTrailingSeparator(WideString& path, WideChar separator) {
    if (!path.empty() && !IsSeparator(path.back())) path += separator;
}

std::vector<WideString> SplitPath(std::u16string_view path) {
    const auto pieces = Split(path, Separators);
    return {pieces.begin(), pieces.end()};
}

WideString CombinePath(const WideString& base, const WideString& rest) {
    if (rest.empty()) return base;
    WideString combined(std::max(base.size() + rest.size() + 2, LongestPath), u'\0');
    ThrowLastErrorIfFalse(Platform::PathCombineW(combined.data(), base.c_str(), rest.c_str()) != nullptr);
    combined.resize(combined.find(u'\0'));
    return combined;
}

WideString SystemPath(const WideString& path) {
    WideString shown(LongestPath, u'\0');
    for (;;) {
        const auto size = static_cast<Platform::DWORD>(shown.size());
        const Platform::DWORD length = Platform::GetFullPathNameW(path.c_str(), size, shown.data(), nullptr);
        if (length == 0) return path;
        shown.resize(length);
        if (length < size) return shown;
    }
}

bool CreateDirectoryPath(const WideString& path, void* security, OnError onError) {
    for (std::size_t at = path.find_first_of(Separators, 1); at != path.npos;
         at = path.find_first_of(Separators, at + 1)) {
        CreateIfMissing(path.substr(0, at), security, onError);
    }
    return CreateIfMissing(path, security, onError);
}

}  // namespace Harbor
