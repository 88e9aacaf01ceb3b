// A cached view of one section. The answer of a look-up, found or missing, is kept until the caches are cleared.
#pragma once

#include <functional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "Common/Base/Guards.h"
#include "Harbor/ResultCodes.h"

namespace Harbor {

// Whether a read may be answered from the caches. Every reader says Yes so far.
enum class UseCache { Yes, No };

// Any thread may call these.
class SettingsSection {
public:
    // Caches older than `expiryMs` milliseconds are cleared at the next read. With 0, which every caller passes so far,
    // only Clear clears them.
    SettingsSection(const WideChar* section, std::uint32_t expiryMs);

    // Returns true and stores the value if the setting exists, otherwise returns false and leaves `value` as it was.
    // With UseCache::No the store is asked, and the answer is not kept.
    bool GetString(const WideChar* key, WideString& value, UseCache useCache);
    bool GetNumber(const WideChar* key, std::uint32_t& value, UseCache useCache);
    // Stores the value, or the default if the setting does not exist.
    void GetStringOr(WideString& value, const WideChar* key, const WideChar* defaultValue, UseCache useCache);

    void Clear();

private:
    // Allows a look-up without building a WideString.
    struct KeyHash : std::hash<std::u16string_view> {
        using is_transparent = void;
    };
    template <class Value>
    using Cache = std::unordered_map<WideString, Value, KeyHash, std::equal_to<>>;

    template <class Value, class Ask>
    bool Get(Cache<Value>& cache, const WideChar* key, Value& value, UseCache useCache, Ask ask);
    void ClearIfExpired();

    const WideString section_;
    const std::uint32_t expiryMs_;

    CriticalSection lock_;  // guards all members below; not held while the store is asked
    std::uint32_t lastClearTick_ = 0;
    Cache<WideString> strings_;
    Cache<std::uint32_t> numbers_;
    std::unordered_set<WideString, KeyHash, std::equal_to<>> missing_;  // shared by texts and numbers
};

}  // namespace Harbor
