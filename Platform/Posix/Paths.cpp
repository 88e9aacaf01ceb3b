#include "Paths.h"

#include <algorithm>
#include <string_view>

#include "Utf.h"

namespace Platform::Posix {

std::string NativePath(const WideChar* path) {
    constexpr std::size_t driveLength = 2;
    std::u16string_view text = path != nullptr ? path : u"";
    if (text.size() >= driveLength && text[1] == u':') text.remove_prefix(driveLength);
    std::string native = Common::ToUtf8(text);
    std::ranges::replace(native, '\\', '/');
    return native;
}

}  // namespace Platform::Posix
