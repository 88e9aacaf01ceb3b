#include "Common/Settings/Registry.h"

#include <optional>

#include "Common/Base/HRes.h"
#include "Common/Base/OwnedHandle.h"
#include "Common/Settings/ModuleInfo.h"
#include "Platform/Errors.h"
#include "Platform/Registry.h"

namespace Harbor {
namespace {

constexpr std::size_t FirstNameSize = 260;

std::optional<Platform::HKEY> RootOf(std::u16string_view name) noexcept {
    if (name == u"HKLM" || name == u"HKEY_LOCAL_MACHINE") return Platform::HKEY_LOCAL_MACHINE;
    if (name == u"HKCU" || name == u"HKEY_CURRENT_USER") return Platform::HKEY_CURRENT_USER;
    return std::nullopt;
}

using RegistryKey = OwnedHandle<Platform::HKEY, &Platform::RegCloseKey>;

// Empty if the key cannot be opened.
RegistryKey OpenKey(Platform::HKEY root, const WideString& path) noexcept {
    Platform::HKEY key = nullptr;
    const bool opened = Platform::RegOpenKeyExW(root, path.c_str(), 0, Platform::KEY_READ, &key) == 0;
    return RegistryKey(opened ? key : nullptr);
}

struct RegistryValue {
    WideString name;
    Platform::DWORD type = 0;
};

// Empty after the last value.
std::optional<RegistryValue> ValueAt(Platform::HKEY key, Platform::DWORD index) {
    RegistryValue value;
    value.name.resize(FirstNameSize);
    for (;;) {
        auto length = static_cast<Platform::DWORD>(value.name.size());
        const Platform::LONG error =
            Platform::RegEnumValueW(key, index, value.name.data(), &length, nullptr, &value.type, nullptr, nullptr);
        if (error == Platform::ERROR_NO_MORE_ITEMS) return std::nullopt;
        if (error != Platform::ERROR_MORE_DATA) ThrowIfWin32Error(static_cast<std::uint32_t>(error));
        if (error == 0) {
            value.name.resize(length);
            return value;
        }
        value.name.resize(std::max<std::size_t>(length, 2 * value.name.size()));
    }
}

void Query(Platform::HKEY key, const WideString& name, WideChar* data, Platform::DWORD& bytes) {
    ThrowIfWin32Error(static_cast<std::uint32_t>(Platform::RegQueryValueExW(
        key, name.c_str(), nullptr, nullptr, reinterpret_cast<std::uint8_t*>(data), &bytes)));
}

WideString TextOf(Platform::HKEY key, const WideString& name) {
    Platform::DWORD bytes = 0;
    Query(key, name, nullptr, bytes);
    WideString text((bytes + sizeof(WideChar) - 1) / sizeof(WideChar), u'\0');  // the size may be odd
    Query(key, name, text.data(), bytes);
    text.resize(std::min(text.find(u'\0'), text.size()));
    return text;
}

}  // namespace

std::map<WideString, WideString> ReadRegistryValues(std::u16string_view keyText) {
    Platform::HKEY root = Platform::HKEY_LOCAL_MACHINE;
    const std::size_t separator = keyText.find_first_of(u"\\/");
    if (const auto named = RootOf(keyText.substr(0, separator))) {
        if (separator == keyText.npos) return {};
        root = *named;
        keyText.remove_prefix(separator + 1);
    }

    std::map<WideString, WideString> values;
    const RegistryKey key = OpenKey(root, WideString(keyText));
    if (!key) return values;
    for (Platform::DWORD index = 0; const auto value = ValueAt(key.get(), index); ++index) {
        if (value->type != Platform::REG_SZ && value->type != Platform::REG_EXPAND_SZ) continue;
        values.insert_or_assign(value->name, ExpandEnvironment(TextOf(key.get(), value->name)));
    }
    return values;
}

}  // namespace Harbor
