// Double-checked creation of a long-lived object, for those that are needed early or read settings. The holder is a
// global that exists from load; the object is a function-local static that ends at unload.
#pragma once

#include <atomic>

#include "Common/Base/Lock.h"

namespace Harbor {

template <class T>
class SingletonHolder {
public:
    constexpr SingletonHolder() noexcept = default;

    // Creates the object at the first call. An exception of its constructor leaves it unbuilt, and the next call tries
    // again. Any thread may call it.
    T& Get() {
        if (T* published = pointer_.load(std::memory_order_acquire)) return *published;
        const LockGuard guard(lock_);
        if (T* published = pointer_.load(std::memory_order_acquire)) return *published;
        static T instance;
        pointer_.store(&instance, std::memory_order_release);
        return instance;
    }

private:
    Lock lock_;
    std::atomic<T*> pointer_{nullptr};
};

}  // namespace Harbor
