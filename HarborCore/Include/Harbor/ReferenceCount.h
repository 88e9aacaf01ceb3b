// The count of references of a component object, and the list of its interfaces.
#pragma once

#include <atomic>

#include "Harbor/ComponentUnknown.h"

namespace Harbor {

// A new count is 1, for the creator of the object. Any thread may call both functions.
class ReferenceCount {
public:
    // Returns the new count.
    std::uint32_t Add() noexcept { return count_.fetch_add(1, std::memory_order_relaxed) + 1; }

    // Returns the new count. Returns 0 once: the caller then ends the object. The last reference leaves the count far
    // from 0: a partner that adds and removes references while the object ends, on any thread, does not end it again.
    // The owner of the only reference needs no exchange for that: what a partner counts without a reference of its own
    // may be lost.
    [[nodiscard]] std::uint32_t Remove() noexcept {
        std::uint32_t count = count_.load(std::memory_order_acquire);
        if (count == 1) {
            count_.store(Ending, std::memory_order_relaxed);
            return 0;
        }
        while (!count_.compare_exchange_weak(count, count == 1 ? Ending : count - 1, std::memory_order_acq_rel,
                                             std::memory_order_relaxed)) {
        }
        return count - 1;
    }

private:
    static constexpr std::uint32_t Ending = 0x80000000;  // far from 0 in both directions

    std::atomic<std::uint32_t> count_{1};
};

template <class... Interfaces>
struct InterfaceList {
    // Returns the first interface of the list that has the id, or null if there is none.
    template <class T>
    static IComponentUnknown* Find(T* object, const GUID& iid) noexcept {
        IComponentUnknown* found = nullptr;
        (void)((iid == Interfaces::Id && (found = static_cast<Interfaces*>(object), true)) || ...);
        return found;
    }
};

}  // namespace Harbor
