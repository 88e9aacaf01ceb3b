// Creates a long-lived object at its first use. This is the one way in which this code makes singletons. The holder is
// a constant-initialised global, so it is usable from the start of loading. The object is a function-local static: it
// is destroyed at unload, in reverse order of creation.
#pragma once

#include <atomic>

#include "Common/Base/Lock.h"

namespace Harbor {

template <class T>
class SingletonHolder {
public:
    constexpr SingletonHolder() noexcept = default;

    // Returns the object. The first call creates it. If its constructor throws, the exception is passed on, and the
    // next call tries again. Any thread may call this.
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
