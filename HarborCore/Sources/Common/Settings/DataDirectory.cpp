#include "Common/Settings/DataDirectory.h"

#include <algorithm>

#include "Common/Base/SingletonHolder.h"
#include "Common/Base/Text.h"
#include "Common/Settings/ModuleInfo.h"
#include "Common/Settings/Paths.h"
#include "Common/Settings/Registry.h"

namespace Harbor {
namespace {

constexpr DataDirectoryDefaults Defaults;
constexpr WideChar PathKey[] = u"DataDirectoryPath";
constexpr WideChar OverrideRegKey[] = u"DataDirectoryPathOverrideRegKey";

constinit SingletonHolder<DataDirectory> Holder;

WideString SettingOrDefault(SettingsStore& settings, const WideChar* key, const WideChar* defaultValue) {
    WideString value;
    if (Defaults.useSettings && Succeeded(settings.GetString(GeneralSection, key, value))) return value;
    return defaultValue == nullptr ? WideString() : WideString(defaultValue);
}

WideString BaseDirectory(SettingsStore& settings, Platform::HMODULE module) {
    WideString directory = ExpandEnvironment(SettingOrDefault(settings, PathKey, Defaults.defaultDirectory));
    return IsRelativePath(directory) ? ModuleDirectory(module) + directory : directory;
}

}  // namespace

const DataDirectory& DataDirectory::Instance() {
    return Holder.Get();
}

DataDirectory::DataDirectory() : DataDirectory(SettingsStore::Instance(), OwnModule()) {}

DataDirectory::DataDirectory(SettingsStore& settings, Platform::HMODULE module) {
    const WideString overrideKey = SettingOrDefault(settings, OverrideRegKey, Defaults.defaultOverrideKey);
    const auto values = overrideKey.empty() ? std::map<WideString, WideString>() : ReadRegistryValues(overrideKey);
    path_ = BaseDirectory(settings, module);
    ReadOverrides(values);
    if (const auto base = overrides_.find({}); base != overrides_.end()) path_ = Resolve(base->second);
    EnsureTrailingSeparator(path_, u'\\');
}

void DataDirectory::ReadOverrides(const std::map<WideString, WideString>& values) {
    for (const auto& [name, text] : values) {
        WideString directory = ExpandEnvironment(text);
        EnsureTrailingSeparator(directory, u'\\');
        overrides_.insert_or_assign(SplitPath(ExpandEnvironment(name)), std::move(directory));
    }
}

WideString DataDirectory::Resolve(const WideString& path) const {
    WideString resolved = ExpandEnvironment(path);
    if (!IsRelativePath(resolved)) return resolved;
    if (ApplyOverrides(resolved) && !IsRelativePath(resolved)) return resolved;
    return path_ + resolved;
}

bool DataDirectory::ApplyOverrides(WideString& path) const {
    if (overrides_.empty()) return false;
    const std::vector<WideString> elements = SplitPath(path);
    for (std::vector<WideString> leading = elements; !leading.empty(); leading.pop_back()) {
        const auto found = overrides_.find(leading);
        if (found == overrides_.end()) continue;
        path = found->second;
        for (std::size_t i = leading.size(); i < elements.size(); ++i) path = CombinePath(path, elements[i]);
        return true;
    }
    return false;
}

bool DataDirectory::LessIgnoringCase::operator()(const std::vector<WideString>& a,
                                                 const std::vector<WideString>& b) const noexcept {
    return std::lexicographical_compare(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const WideString& x, const WideString& y) { return CompareIgnoreCase(x, y) < 0; });
}

WideString ResolveDataPath(const WideString& path) {
    return DataDirectory::Instance().Resolve(path);
}

}  // namespace Harbor
