#include "Paths.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "Failure.h"
#include "Platform/Files.h"
#include "Utf.h"

namespace Platform {

using namespace Posix;

namespace {

using WideView = std::u16string_view;

constexpr WideView Separators = u"\\/";
constexpr std::size_t DriveLength = 2;
constexpr std::size_t LongestPath = 32767;  // what a counted text of the platform holds

bool HasDrive(WideView path) noexcept {
    return path.size() >= DriveLength && path[1] == u':';
}

bool IsSeparator(WideChar character) noexcept {
    return Separators.find(character) != WideView::npos;
}

bool IsAbsolute(WideView path) noexcept {
    return HasDrive(path) || (!path.empty() && IsSeparator(path[0]));
}

WideString Join(WideView base, WideView rest) {
    if (base.empty() || IsAbsolute(rest)) return WideString{rest};
    WideString joined{base};
    if (!rest.empty() && !IsSeparator(joined.back())) joined += u'\\';
    return joined.append(rest);
}

// The drive and the leading separators. ".." does not go above them.
WideView RootOf(WideView path) noexcept {
    const std::size_t drive = HasDrive(path) ? DriveLength : 0;
    return path.substr(0, std::min(path.find_first_not_of(Separators, drive), path.size()));
}

// An element and the separator after it, if any.
struct Element {
    WideView name;
    WideView separator;
};

Element TakeElement(WideView& path) noexcept {
    const std::size_t end = std::min(path.find_first_of(Separators), path.size());
    const Element element{path.substr(0, end), path.substr(end, 1)};
    path.remove_prefix(end);
    path.remove_prefix(std::min(path.find_first_not_of(Separators), path.size()));
    return element;
}

WideString ResolveDots(WideView path) {
    const WideView root = RootOf(path);
    std::vector<Element> kept;
    WideView lastSeparator;
    for (WideView rest = path.substr(root.size()); !rest.empty();) {
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

    WideString resolved{root};
    for (const Element& element : kept) resolved.append(element.name).append(element.separator);
    // An empty path would be invalid.
    return resolved.empty() ? u"." : resolved;
}

}  // namespace

WideChar* PathCombineW(WideChar* result, const WideChar* base, const WideChar* rest) noexcept {
    WideChar* const failure = nullptr;
    if (result == nullptr || (base == nullptr && rest == nullptr)) return Fail(ERROR_INVALID_PARAMETER, failure);
    return OrOutOfMemory(failure, [&] {
        const WideString path = ResolveDots(Join(base != nullptr ? base : u"", rest != nullptr ? rest : u""));
        if (path.size() > LongestPath) return Fail(ERROR_FILENAME_EXCED_RANGE, failure);
        path.copy(result, path.size());
        result[path.size()] = u'\0';
        return result;
    });
}

namespace Posix {

std::string NativePath(const WideChar* path) {
    WideView text = path != nullptr ? path : u"";
    if (HasDrive(text)) text.remove_prefix(DriveLength);
    std::string native = ToUtf8(text);
    std::ranges::replace(native, '\\', '/');
    return native;
}

}  // namespace Posix

}  // namespace Platform
