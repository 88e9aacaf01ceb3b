#include "Platform/Registry.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <string_view>

#include "ErrnoCodes.h"
#include "Platform/Errors.h"
#include "RegistryFile.h"
#include "TextFile.h"
#include "WideText.h"

namespace Platform {

// An open key keeps the content that it had when it was opened.
struct RegistryKeyOpaque {
    std::vector<Posix::RegistryValue> values;
};

namespace {

using Posix::RegistryValue;

constexpr LONG Code(DWORD code) noexcept {
    return static_cast<LONG>(code);
}

std::optional<std::u16string_view> RootName(HKEY key) noexcept {
    if (key == HKEY_LOCAL_MACHINE) return u"HKEY_LOCAL_MACHINE";
    if (key == HKEY_CURRENT_USER) return u"HKEY_CURRENT_USER";
    return std::nullopt;
}

// The functions here return their code and do not change the last error.
template <typename Body>
LONG OrOutOfMemoryCode(Body body) noexcept {
    try {
        return Code(body());
    } catch (const std::exception&) {
        return Code(ERROR_NOT_ENOUGH_MEMORY);
    }
}

DWORD ReadRegistryFile(WideString& text) {
    const char* const path = std::getenv("ORV_REGISTRY_FILE");
    if (path == nullptr) return ERROR_FILE_NOT_FOUND;
    int errorNumber = 0;
    return Posix::ReadTextFile(path, text, errorNumber) ? ERROR_SUCCESS : Posix::Win32FromErrno(errorNumber);
}

WideString FullPath(std::u16string_view rootName, const WideChar* path) {
    WideString result(rootName);
    std::u16string_view rest = path != nullptr ? path : u"";
    if (rest.ends_with(u'\\')) rest.remove_suffix(1);
    if (!rest.empty()) result.append(u"\\").append(rest);
    return result;
}

const RegistryValue* FindValue(const RegistryKeyOpaque& key, std::u16string_view name) noexcept {
    const auto value = std::find_if(key.values.begin(), key.values.end(), [name](const RegistryValue& candidate) {
        return Common::EqualIgnoringCase(candidate.name, name);
    });
    return value != key.values.end() ? &*value : nullptr;
}

void StoreType(const RegistryValue& value, DWORD* type) noexcept {
    if (type != nullptr) *type = value.type;
}

}  // namespace

LONG RegOpenKeyExW(HKEY root, const WideChar* path, DWORD options, DWORD access, HKEY* key) noexcept {
    if (key == nullptr || options != 0) return Code(ERROR_INVALID_PARAMETER);
    *key = nullptr;
    const std::optional<std::u16string_view> rootName = RootName(root);
    if (!rootName) return Code(ERROR_INVALID_HANDLE);
    if ((access & ~KEY_READ) != 0) return Code(ERROR_ACCESS_DENIED);
    return OrOutOfMemoryCode([&]() -> DWORD {
        WideString text;
        if (const DWORD error = ReadRegistryFile(text); error != ERROR_SUCCESS) return error;
        auto values = Posix::ReadRegistryKey(text, FullPath(*rootName, path));
        if (!values) return ERROR_FILE_NOT_FOUND;
        *key = std::make_unique<RegistryKeyOpaque>(RegistryKeyOpaque{*std::move(values)}).release();
        return ERROR_SUCCESS;
    });
}

LONG RegCloseKey(HKEY key) noexcept {
    if (key == nullptr) return Code(ERROR_INVALID_HANDLE);
    if (!RootName(key)) const std::unique_ptr<RegistryKeyOpaque> closed(key);
    return Code(ERROR_SUCCESS);
}

LONG RegEnumValueW(HKEY key, DWORD index, WideChar* name, DWORD* nameLength, DWORD* reserved, DWORD* type,
                   std::uint8_t* data, DWORD* dataSize) noexcept {
    if (key == nullptr || RootName(key)) return Code(ERROR_INVALID_HANDLE);
    if (name == nullptr || nameLength == nullptr || reserved != nullptr || data != nullptr || dataSize != nullptr)
        return Code(ERROR_INVALID_PARAMETER);
    if (index >= key->values.size()) return Code(ERROR_NO_MORE_ITEMS);

    const RegistryValue& value = key->values[index];
    const auto length = static_cast<DWORD>(value.name.size());
    if (*nameLength <= length) {
        *nameLength = length + 1;
        return Code(ERROR_MORE_DATA);
    }
    std::copy_n(value.name.c_str(), length + 1, name);
    *nameLength = length;
    StoreType(value, type);
    return Code(ERROR_SUCCESS);
}

LONG RegQueryValueExW(HKEY key, const WideChar* name, DWORD* reserved, DWORD* type, std::uint8_t* data,
                      DWORD* dataSize) noexcept {
    if (key == nullptr || RootName(key)) return Code(ERROR_INVALID_HANDLE);
    if (reserved != nullptr || (data != nullptr && dataSize == nullptr)) return Code(ERROR_INVALID_PARAMETER);
    const RegistryValue* const value = FindValue(*key, name != nullptr ? name : u"");
    if (value == nullptr) return Code(ERROR_FILE_NOT_FOUND);

    StoreType(*value, type);
    if (dataSize == nullptr) return Code(ERROR_SUCCESS);
    const auto needed = static_cast<DWORD>(value->data.size());
    const bool fits = data == nullptr || *dataSize >= needed;
    *dataSize = needed;
    if (!fits) return Code(ERROR_MORE_DATA);
    if (data != nullptr) std::copy(value->data.begin(), value->data.end(), data);
    return Code(ERROR_SUCCESS);
}

}  // namespace Platform
