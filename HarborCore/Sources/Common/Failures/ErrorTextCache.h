// The texts of codes that were asked for before. It has no limit, and entries never change or leave.
#pragma once

#include <atomic>
#include <map>

#include "Common/Base/Guards.h"
#include "Harbor/Types.h"

namespace Harbor {

class ErrorTextCache {
public:
    // Created at load. Once its end at unload has begun, nothing is found and nothing stored.
    static ErrorTextCache& Instance();

    // Any thread. Store leaves a known code as it is.
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
