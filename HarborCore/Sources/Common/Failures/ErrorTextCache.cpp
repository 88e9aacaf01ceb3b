#include "Common/Failures/ErrorTextCache.h"

#include "Common/Base/SingletonHolder.h"

namespace Harbor {

namespace {

constinit SingletonHolder<ErrorTextCache> Holder;

}  // namespace

ErrorTextCache& ErrorTextCache::Instance() {
    return Holder.Get();
}

ErrorTextCache::~ErrorTextCache() {
    alive_.store(false);
}

bool ErrorTextCache::Lookup(std::uint32_t code, WideString& text) const {
    if (!alive_.load()) return false;
    const SharedGuard guard(lock_);
    const auto found = texts_.find(code);
    if (found == texts_.end()) return false;
    text = found->second;
    return true;
}

void ErrorTextCache::Store(std::uint32_t code, const WideString& text) {
    if (!alive_.load()) return;
    const ExclusiveGuard guard(lock_);
    texts_.emplace(code, text);
}

}  // namespace Harbor
