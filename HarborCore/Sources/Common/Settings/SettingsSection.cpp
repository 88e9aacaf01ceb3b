#include "Common/Settings/SettingsSection.h"

#include "Common/Settings/SettingsStore.h"
#include "Platform/Time.h"

namespace Harbor {

SettingsSection::SettingsSection(const WideChar* section, std::uint32_t expiryMs)
    : section_(section), expiryMs_(expiryMs) {}

template <class Value, class Ask>
bool SettingsSection::Get(Cache<Value>& cache, const WideChar* key, Value& value, UseCache useCache, Ask ask) {
    if (useCache == UseCache::No) return Succeeded(ask(value));
    {
        const CriticalSectionGuard guard(lock_);
        ClearIfExpired();
        if (const auto found = cache.find(std::u16string_view(key)); found != cache.end()) {
            value = found->second;
            return true;
        }
        if (missing_.contains(std::u16string_view(key))) return false;
    }
    const bool exists = Succeeded(ask(value));
    const CriticalSectionGuard guard(lock_);
    if (exists) {
        cache.insert_or_assign(key, value);
    } else {
        missing_.insert(key);
    }
    return exists;
}

bool SettingsSection::GetString(const WideChar* key, WideString& value, UseCache useCache) {
    return Get(strings_, key, value, useCache,
               [&](WideString& found) { return GetSetting(section_.c_str(), key, found); });
}

bool SettingsSection::GetNumber(const WideChar* key, std::uint32_t& value, UseCache useCache) {
    return Get(numbers_, key, value, useCache,
               [&](std::uint32_t& found) { return GetSettingNumber(section_.c_str(), key, found); });
}

void SettingsSection::GetStringOr(WideString& value, const WideChar* key, const WideChar* defaultValue,
                                  UseCache useCache) {
    if (!GetString(key, value, useCache)) value = defaultValue;
}

void SettingsSection::Clear() {
    const CriticalSectionGuard guard(lock_);
    strings_.clear();
    numbers_.clear();
    missing_.clear();
    lastClearTick_ = Platform::GetTickCount();
}

void SettingsSection::ClearIfExpired() {
    if (expiryMs_ == 0) return;
    if (lastClearTick_ == 0 || Platform::GetTickCount() - lastClearTick_ > expiryMs_) Clear();
}

}  // namespace Harbor
