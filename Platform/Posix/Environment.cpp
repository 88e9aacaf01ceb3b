#include "Platform/Environment.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string_view>

#include "ErrnoFailure.h"
#include "Platform/Errors.h"
#include "Utf.h"

namespace Platform {

namespace {

std::optional<WideString> ReadVariable(std::u16string_view name) {
    const char* const value = std::getenv(Common::ToUtf8(name).c_str());
    if (value == nullptr) return std::nullopt;
    return Common::ToWide(value);
}

// The "%" that ends an unknown name may begin the next reference, as in "50% of %HOME%".
WideString Expand(std::u16string_view source) {
    WideString result;
    for (;;) {
        const std::size_t begin = source.find(u'%');
        result += source.substr(0, begin);
        if (begin == std::u16string_view::npos) return result;
        source.remove_prefix(begin);

        const std::size_t end = source.find(u'%', 1);
        if (end == std::u16string_view::npos) return result += source;
        if (const std::optional<WideString> value = ReadVariable(source.substr(1, end - 1))) {
            result += *value;
            source.remove_prefix(end + 1);
        } else {
            result += source.substr(0, end);
            source.remove_prefix(end);
        }
    }
}

bool FitsSizes(const WideString& text) noexcept {
    return text.size() < std::numeric_limits<DWORD>::max();
}

// Copies the text and its terminator if they fit. Returns whether they did.
bool CopyIfItFits(const WideString& text, WideChar* buffer, DWORD size) noexcept {
    if (buffer == nullptr || text.size() >= size) return false;
    std::copy_n(text.c_str(), text.size() + 1, buffer);
    return true;
}

}  // namespace

DWORD GetEnvironmentVariableW(const WideChar* name, WideChar* buffer, DWORD size) noexcept {
    if (name == nullptr) return Posix::Fail(ERROR_INVALID_PARAMETER, DWORD{0});
    return Posix::OrOutOfMemory(DWORD{0}, [&]() -> DWORD {
        const std::optional<WideString> value = ReadVariable(name);
        if (!value) return Posix::Fail(ERROR_ENVVAR_NOT_FOUND, DWORD{0});
        if (!FitsSizes(*value)) return Posix::Fail(ERROR_NOT_ENOUGH_MEMORY, DWORD{0});
        const auto length = static_cast<DWORD>(value->size());
        return CopyIfItFits(*value, buffer, size) ? length : length + 1;
    });
}

DWORD ExpandEnvironmentStringsW(const WideChar* source, WideChar* buffer, DWORD size) noexcept {
    if (source == nullptr) return Posix::Fail(ERROR_INVALID_PARAMETER, DWORD{0});
    return Posix::OrOutOfMemory(DWORD{0}, [&]() -> DWORD {
        const WideString text = Expand(source);
        if (!FitsSizes(text)) return Posix::Fail(ERROR_NOT_ENOUGH_MEMORY, DWORD{0});
        CopyIfItFits(text, buffer, size);
        return static_cast<DWORD>(text.size()) + 1;
    });
}

}  // namespace Platform
