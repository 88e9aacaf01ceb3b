#include "Common/Settings/Registry.h"

#include <optional>

#include "Common/Base/HRes.h"
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

class RegistryKey {
public:
    RegistryKey(Platform::HKEY root, const WideString& path) {
        if (Platform::RegOpenKeyExW(root, path.c_str(), 0, Platform::KEY_READ, &key_) != 0) key_ = nullptr;
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() {
        if (key_ != nullptr) Platform::RegCloseKey(key_);
    }

    bool IsOpen() const noexcept { return key_ != nullptr; }

    struct Value {
        WideString name;
        Platform::DWORD type = 0;
    };
    // Nothing behind the last value.
    std::optional<Value> ValueAt(Platform::DWORD index) const {
        Value value;
        value.name.resize(FirstNameSize);
        for (;;) {
            auto length = static_cast<Platform::DWORD>(value.name.size());
            const Platform::LONG error = Platform::RegEnumValueW(key_, index, value.name.data(), &length, nullptr,
                                                                 &value.type, nullptr, nullptr);
            if (error == Platform::ERROR_NO_MORE_ITEMS) return std::nullopt;
            if (error != Platform::ERROR_MORE_DATA) ThrowIfWin32Error(static_cast<std::uint32_t>(error));
            if (error == 0) {
                value.name.resize(length);
                return value;
            }
            value.name.resize(std::max<std::size_t>(length, 2 * value.name.size()));
        }
    }

    WideString TextOf(const WideString& name) const {
        Platform::DWORD bytes = 0;
        Query(name, nullptr, bytes);
        WideString text((bytes + sizeof(WideChar) - 1) / sizeof(WideChar), u'\0');  // the size may be odd
        Query(name, text.data(), bytes);
        text.resize(std::min(text.find(u'\0'), text.size()));
        return text;
    }

private:
    void Query(const WideString& name, WideChar* data, Platform::DWORD& bytes) const {
        ThrowIfWin32Error(static_cast<std::uint32_t>(Platform::RegQueryValueExW(
            key_, name.c_str(), nullptr, nullptr, reinterpret_cast<std::uint8_t*>(data), &bytes)));
    }

    Platform::HKEY key_ = nullptr;
};

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
    const RegistryKey key(root, WideString(keyText));
    if (!key.IsOpen()) return values;
    for (Platform::DWORD index = 0; const auto value = key.ValueAt(index); ++index) {
        if (value->type != Platform::REG_SZ && value->type != Platform::REG_EXPAND_SZ) continue;
        values.insert_or_assign(value->name, ExpandEnvironment(key.TextOf(value->name)));
    }
    return values;
}

}  // namespace Harbor
