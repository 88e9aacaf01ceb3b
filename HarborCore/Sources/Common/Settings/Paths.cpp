#include "Common/Settings/Paths.h"

#include <algorithm>

#include "Common/Base/HRes.h"
#include "Common/Base/Text.h"
#include "Platform/Errors.h"
#include "Platform/Files.h"

namespace Harbor {
namespace {

constexpr std::u16string_view Separators = u"\\/";
constexpr std::size_t DriveLength = 2;

bool IsSeparator(WideChar c) noexcept {
    return Separators.find(c) != Separators.npos;
}

bool HasDrive(std::u16string_view path) noexcept {
    return path.size() >= DriveLength && path[1] == u':';
}

// The drive and the leading separators.
std::u16string_view RootOf(std::u16string_view path) noexcept {
    const std::size_t drive = HasDrive(path) ? DriveLength : 0;
    return path.substr(0, std::min(path.find_first_not_of(Separators, drive), path.size()));
}

// An element and the separator after it, if any.
struct Element {
    std::u16string_view name;
    std::u16string_view separator;
};

Element TakeElement(std::u16string_view& path) noexcept {
    const std::size_t end = std::min(path.find_first_of(Separators), path.size());
    const Element element{path.substr(0, end), path.substr(end, 1)};
    path.remove_prefix(end);
    path.remove_prefix(std::min(path.find_first_not_of(Separators), path.size()));
    return element;
}

// Resolves "." and ".." by the text alone. ".." does not go above a drive or a leading separator.
WideString ResolveDots(std::u16string_view path) {
    const std::u16string_view root = RootOf(path);
    std::vector<Element> kept;
    std::u16string_view lastSeparator;
    for (std::u16string_view rest = path.substr(root.size()); !rest.empty();) {
        const Element element = TakeElement(rest);
        lastSeparator = element.separator;
        if (element.name == u".") continue;
        const bool goesUp = element.name == u"..";
        if (goesUp && !kept.empty() && kept.back().name != u"..") {
            kept.pop_back();
        } else if (!goesUp || root.empty()) {
            kept.push_back(element);
        }
    }
    if (!kept.empty()) kept.back().separator = lastSeparator;

    WideString resolved(root);
    for (const Element& element : kept) resolved.append(element.name).append(element.separator);
    // An empty path would be invalid.
    return resolved.empty() ? u"." : resolved;
}

void CreateIfMissing(const WideString& directory, void* security, OnError onError) {
    if (Platform::GetFileAttributesW(directory.c_str()) != Platform::INVALID_FILE_ATTRIBUTES) return;
    const Platform::DWORD error = Platform::GetLastError();
    if (error != Platform::ERROR_FILE_NOT_FOUND && error != Platform::ERROR_PATH_NOT_FOUND) return;
    const HRES created = HRES::FromBoolUnchecked(Platform::CreateDirectoryW(directory.c_str(), security));
    if (onError == OnError::Throw) created.ThrowIfFailed();
}

}  // namespace

bool IsRelativePath(std::u16string_view path) noexcept {
    if (path.empty()) return true;
    return !IsSeparator(path[0]) && !HasDrive(path);
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
    if (base.empty() || !IsRelativePath(rest)) return ResolveDots(rest);
    WideString joined = base;
    EnsureTrailingSeparator(joined, u'\\');
    return ResolveDots(joined + rest);
}

void CreateDirectoryPath(const WideString& path, void* security, OnError onError) {
    for (std::size_t at = path.find_first_of(Separators, 1); at != path.npos;
         at = path.find_first_of(Separators, at + 1)) {
        CreateIfMissing(path.substr(0, at), security, onError);
    }
    CreateIfMissing(path, security, onError);
}

}  // namespace Harbor
