// A cached view of one section. What was looked up, found or not, stays as it was until the caches are cleared.
#pragma once

#include <functional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "Common/Base/Guards.h"
#include "Harbor/ResultCodes.h"

namespace Harbor {

class SettingsSection {
public:
    // Caches older than `expiryMs` milliseconds are cleared at the next read; 0 leaves that to Clear.
    SettingsSection(const WideChar* section, std::uint32_t expiryMs);

    // True if the setting exists. Without `useCache` the store is asked and nothing is remembered. Any thread.
    bool GetString(const WideChar* key, WideString& value, bool useCache);
    bool GetNumber(const WideChar* key, std::uint32_t& value, bool useCache);
    void GetStringOr(WideString& value, const WideChar* key, const WideChar* defaultValue, bool useCache);

    void Clear();

private:
    // Lets a key be looked up without making a text of it.
    struct KeyHash : std::hash<std::u16string_view> {
        using is_transparent = void;
    };
    template <class Value>
    using Cache = std::unordered_map<WideString, Value, KeyHash, std::equal_to<>>;

    template <class Value, class Ask>
    bool Get(Cache<Value>& cache, const WideChar* key, Value& value, bool useCache, Ask ask);
    void ClearIfExpired();

    const WideString section_;
    const std::uint32_t expiryMs_;

    CriticalSection lock_;  // guards all below; never held while the store is asked
    std::uint32_t lastClearTick_ = 0;
    Cache<WideString> strings_;
    Cache<std::uint32_t> numbers_;
    std::unordered_set<WideString, KeyHash, std::equal_to<>> missing_;  // shared by texts and numbers
};

}  // namespace Harbor
