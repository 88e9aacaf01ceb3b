// The cache of the texts of codes. It has no size limit, and its entries are never changed or removed.
#pragma once

#include <atomic>
#include <map>

#include "Common/Base/Guards.h"
#include "Harbor/Types.h"

namespace Harbor {

class ErrorTextCache {
public:
    // Returns the cache. The first call, at load, creates it. When its destruction at unload has begun, Lookup finds
    // nothing and Store does nothing.
    static ErrorTextCache& Instance();

    // Lookup returns true and copies the text if the code is known. Store does nothing for a known code. Any thread may
    // call both.
    bool Lookup(std::uint32_t code, WideString& text) const;
    void Store(std::uint32_t code, const WideString& text);

    ErrorTextCache(const ErrorTextCache&) = delete;
    ErrorTextCache& operator=(const ErrorTextCache&) = delete;

private:
    template <class T>
    friend class SingletonHolder;
    ErrorTextCache() noexcept = default;
    ~ErrorTextCache();

    std::atomic<bool> alive_{true};
    mutable ReaderWriterLock lock_;
    std::map<std::uint32_t, WideString> texts_;  // guarded by lock_
};

}  // namespace Harbor
