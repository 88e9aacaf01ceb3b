#include "Common/Settings/SettingsStore.h"

#include "Common/Base/HRes.h"
#include "Common/Base/SingletonHolder.h"

namespace Harbor {
namespace {

constinit SingletonHolder<SettingsStore> Holder;

}  // namespace

SettingsStore& SettingsStore::Instance() {
    return Holder.Get();
}

SettingsStore::SettingsStore() {
    // Only the construction of the first source can fail after this, so that a second try finds no source that belongs
    // to a store that no longer exists.
    ThrowIfOutOfMemory([this] { sources_.reserve(2); });
    static RegisteredSource<IniSettingsSource> iniFiles(*this, AtEnd::StayRegistered);
    static RegisteredSource<EnvironmentSettingsSource> environment(*this, AtEnd::StayRegistered);
}

SettingsStore::SettingsStore(Platform::HMODULE module) {
    ThrowIfOutOfMemory([&] {
        owned_.push_back(std::make_unique<IniSettingsSource>(module));
        owned_.push_back(std::make_unique<EnvironmentSettingsSource>());
    });
    for (const auto& source : owned_) AddSource(*source);
}

void SettingsStore::AddSource(ISettingsSource& source) {
    const CriticalSectionGuard guard(lock_);
    ThrowIfOutOfMemory([&] { sources_.push_back(&source); });
}

void SettingsStore::RemoveSource(ISettingsSource& source) {
    const CriticalSectionGuard guard(lock_);
    std::erase(sources_, &source);
}

template <class Ask>
HRESULT SettingsStore::AskSources(Ask ask) {
    const CriticalSectionGuard guard(lock_);
    for (auto source = sources_.rbegin(); source != sources_.rend(); ++source) {
        const HRESULT code = ask(**source);
        if (Succeeded(code) || code == E_ABORT) return code;
    }
    return NOT_FOUND;
}

HRESULT SettingsStore::GetString(const WideChar* section, const WideChar* key, WideString& value) {
    return AskSources([&](ISettingsSource& source) { return source.GetString(section, key, value); });
}

HRESULT SettingsStore::GetNumber(const WideChar* section, const WideChar* key, std::uint32_t& value) {
    return AskSources([&](ISettingsSource& source) { return source.GetNumber(section, key, value); });
}

HRESULT SettingsStore::FindString(const WideChar* section, const WideChar* key, WideString& value, WideString& place) {
    return AskSources([&](ISettingsSource& source) {
        const HRESULT code = source.GetString(section, key, value);
        if (Succeeded(code)) place = source.PlaceOf(section, key);
        return code;
    });
}

HRESULT SettingsStore::FindNumber(const WideChar* section, const WideChar* key, std::uint32_t& value,
                                  WideString& place) {
    return AskSources([&](ISettingsSource& source) {
        const HRESULT code = source.GetNumber(section, key, value);
        if (Succeeded(code)) place = source.PlaceOf(section, key);
        return code;
    });
}

HRESULT GetSetting(const WideChar* section, const WideChar* key, WideString& value) {
    return SettingsStore::Instance().GetString(section, key, value);
}

HRESULT GetSettingNumber(const WideChar* section, const WideChar* key, std::uint32_t& value) {
    return SettingsStore::Instance().GetNumber(section, key, value);
}

bool HasSetting(const WideChar* section, const WideChar* key, WideString& value) {
    return Succeeded(GetSetting(section, key, value));
}

WideString GetSettingOr(const WideChar* section, const WideChar* key, const WideChar* defaultValue) {
    WideString value;
    return HasSetting(section, key, value) ? value : WideString(defaultValue);
}

std::uint32_t GetSettingNumberOr(const WideChar* section, const WideChar* key, std::uint32_t defaultValue) {
    std::uint32_t value = 0;
    return Succeeded(GetSettingNumber(section, key, value)) ? value : defaultValue;
}

}  // namespace Harbor
