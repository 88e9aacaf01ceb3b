// Where a relative data path really lies: below a base directory, or where an override sends it.
#pragma once

#include <map>
#include <vector>

#include "Harbor/Types.h"

namespace Harbor {

// What holds where no setting says otherwise; null means none, and then the base is this module's own directory.
struct DataDirectoryDefaults {
    bool useSettings = true;
    const WideChar* defaultDirectory = nullptr;
    const WideChar* defaultOverrideKey = nullptr;
};

class DataDirectory {
public:
    // Built at the first call, from the settings DataDirectoryPath and DataDirectoryPathOverrideRegKey of the section
    // General; later changes of these apply at the next load. A failing registry read is thrown as HRX, and the next
    // call tries again.
    static const DataDirectory& Instance();

    // The real path: environment references expanded, absolute paths as they are, relative ones sent by the override
    // of their longest leading part, or put behind the base directory. Any thread.
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
    std::map<std::vector<WideString>, WideString, LessIgnoringCase> overrides_;  // path elements to a directory
};

[[nodiscard]] WideString ResolveDataPath(const WideString& path);

}  // namespace Harbor
