// A cached view of one section. What was looked up, found or not, stays as it was until the caches are cleared.
#pragma once

#include <atomic>
#include <unordered_map>
#include <unordered_set>

#include "Common/Guards.h"
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
    template <class Value, class Ask>
    bool Get(std::unordered_map<WideString, Value>& cache, const WideChar* key, Value& value, bool useCache, Ask ask);
    void ClearIfExpired();

    const WideString section_;
    const std::uint32_t expiryMs_;

    CriticalSection lock_;  // guards all below; never held while the store is asked
    std::uint32_t lastClearTick_ = 0;
    std::unordered_map<WideString, WideString> strings_;
    std::unordered_map<WideString, std::uint32_t> numbers_;
    std::unordered_set<WideString> missing_;  // shared by texts and numbers
};

}  // namespace Harbor
