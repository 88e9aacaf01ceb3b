// The place of a relative data path: below the base directory, or below the directory of an override.
#pragma once

#include <map>
#include <vector>

#include "Common/Settings/SettingsStore.h"
#include "Harbor/Types.h"

namespace Harbor {

// The values that apply if a setting is missing. Null means none; the base is then the directory of this module.
struct DataDirectoryDefaults {
    bool useSettings = true;
    const WideChar* defaultDirectory = nullptr;
    const WideChar* defaultOverrideKey = nullptr;
};

class DataDirectory {
public:
    // Returns the object. The first call creates it from the settings DataDirectoryPath and
    // DataDirectoryPathOverrideRegKey of the section General; later changes of these apply at the next load. A failed
    // read of the registry is thrown as HRX, and the next call tries again.
    static const DataDirectory& Instance();
    // The same for another module of this process and its settings. Both are used only during the call.
    DataDirectory(SettingsStore& settings, Platform::HMODULE module);

    // Returns the real path of a data path. First, environment references are expanded. An absolute path is then
    // returned unchanged. In a relative path the longest leading part that has an override is replaced by the directory
    // of that override. A path that is still relative is appended to the base directory. Any thread may call this.
    [[nodiscard]] WideString Resolve(const WideString& path) const;

    DataDirectory(const DataDirectory&) = delete;
    DataDirectory& operator=(const DataDirectory&) = delete;

private:
    template <class T>
    friend class SingletonHolder;
    DataDirectory();

    struct LessIgnoringCase {
        bool operator()(const std::vector<WideString>& a, const std::vector<WideString>& b) const noexcept;
    };

    void ReadOverrides(const std::map<WideString, WideString>& values);
    bool ApplyOverrides(WideString& path) const;

    WideString path_;  // with a trailing separator when not empty
    std::map<std::vector<WideString>, WideString, LessIgnoringCase> overrides_;  // by path elements: a directory
};

// Returns DataDirectory::Instance().Resolve(path).
[[nodiscard]] WideString ResolveDataPath(const WideString& path);

}  // namespace Harbor
